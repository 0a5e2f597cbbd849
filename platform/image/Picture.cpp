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

std::unique_ptr<const Picture> openOwnKind(const std::shared_ptr<pdf::InputFile>& file) {
    std::array<char, 8> bytes{};
    const std::string_view start(bytes.data(), file->readAt(0, bytes));
    if (start.starts_with("\xFF\xD8\xFF"sv)) return JpegPicture::open(file);
    if (start == "\x89PNG\r\n\x1A\n"sv) return PngPicture::open(file);
    const bool isTiff = start.starts_with("II*\0"sv) || start.starts_with("MM\0*"sv) || start.starts_with("II+\0"sv) ||
                        start.starts_with("MM\0+"sv);
    return isTiff ? TiffPicture::open(file) : nullptr;
}

}  // namespace

Picture::Picture(std::shared_ptr<pdf::InputFile> file, const Properties& properties)
    : file_(std::move(file)), properties_(properties) {}

std::unique_ptr<const Picture> Picture::open(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& suffix) {
    if (auto picture = openOwnKind(file)) return picture;
    return DecodedPicture::open(file, suffix);
}

}  // namespace quillon
