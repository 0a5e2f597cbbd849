#include "platform/image/DecodedPicture.h"

#include "platform/image/ByteView.h"
#include "platform/image/IccProfile.h"
#include "platform/image/ImageEncoder.h"
#include "platform/image/JpegHeader.h"
#include "platform/image/PictureDecoder.h"

#include <array>

namespace quillon {

namespace {

struct Hints {
    Resolution resolution;
    Orientation orientation;
};

// Qt gives a picture the screen's resolution when its file says none, and decodes before it tells either: what is to be
// known comes from the headers of the kinds that have it.
Hints hintsOf(pdf::InputFile& file) {
    std::array<char, 46> start{};
    const std::size_t length = file.readAt(0, start);
    const ByteView bytes(std::span<const char>(start).first(length), ByteView::Order::LittleEndian);
    if (bytes.startsWith("\xFF\xD8")) {
        const std::optional<JpegHeader> header = JpegHeader::read(file);
        if (header) return {header->resolution.value_or(Resolution{}), header->orientation};
    }
    constexpr std::size_t infoHeaderLength = 40;
    if (bytes.startsWith("BM") && bytes.u32(14) >= infoHeaderLength) {
        const auto horizontal = static_cast<std::int32_t>(bytes.u32(38));
        const auto vertical = static_cast<std::int32_t>(bytes.u32(42));
        return {Resolution::perMetre(horizontal, vertical).value_or(Resolution{}), Orientation()};
    }
    return {};
}

QSize sizeOf(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& format) {
    PictureDecoder decoder(file, format);
    if (!decoder.canDecode()) return {};
    const QSize size = decoder.size();
    if (size.isValid()) return size;
    const auto image = decoder.decode();
    return image ? QSize(image->width(), image->height()) : QSize();
}

}  // namespace

std::unique_ptr<const Picture> DecodedPicture::open(const std::shared_ptr<pdf::InputFile>& file,
                                                    const QByteArray& suffix) {
    // The suffix goes first: the first bytes of a TGA file are those of a cursor as well. A decoder that is asked for
    // by name still looks whether the content is of its kind.
    for (const QByteArray& format : {suffix, QByteArray()}) {
        const QSize size = sizeOf(file, format);
        if (size.isEmpty()) continue;
        const Hints hints = hintsOf(*file);
        const Properties properties{size, hints.resolution, hints.orientation};
        return std::unique_ptr<const Picture>(new DecodedPicture(file, properties, format));
    }
    return nullptr;
}

std::optional<std::uint32_t> DecodedPicture::addTo(pdf::ObjectSink& sink) const {
    const auto image = PictureDecoder(file(), format_).decode();
    if (!image) return std::nullopt;
    return ImageEncoder(*image, IccProfile(image->profile())).addTo(sink);
}

}  // namespace quillon
