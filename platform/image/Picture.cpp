#include "platform/image/Picture.h"

#include "platform/image/DecodedPicture.h"
#include "platform/image/JpegPicture.h"
#include "platform/image/PngPicture.h"
#include "platform/image/TiffPicture.h"

#include <array>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

using namespace std::string_view_literals;

bool isTiff(std::string_view start) {
    return start.starts_with("II*\0"sv) || start.starts_with("MM\0*"sv) || start.starts_with("II+\0"sv) ||
           start.starts_with("MM\0+"sv);
}

}  // namespace

Picture::Picture(std::shared_ptr<pdf::InputFile> file, const Properties& properties)
    : file_(std::move(file)), properties_(properties) {}

std::unique_ptr<const Picture> Picture::open(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& suffix) {
    std::array<char, 8> bytes{};
    const std::string_view start(bytes.data(), file->readAt(0, bytes));
    // A PNG or TIFF file refused here would only be refused again by Qt, and libpng prints what it thinks of it.
    if (start == "\x89PNG\r\n\x1A\n"sv) return PngPicture::open(file);
    if (isTiff(start)) return TiffPicture::open(file);
    if (start.starts_with("\xFF\xD8\xFF"sv)) {
        if (auto picture = JpegPicture::open(file)) return picture;
    }
    return DecodedPicture::open(file, suffix);
}

}  // namespace quillon
