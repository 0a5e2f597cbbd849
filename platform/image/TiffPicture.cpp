#include "platform/image/TiffPicture.h"

#include "platform/image/BilevelEncoder.h"
#include "platform/image/FileBytes.h"
#include "platform/image/IccProfile.h"
#include "platform/image/ImageEncoder.h"
#include "platform/image/PictureDecoder.h"
#include "platform/image/TiffFile.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace quillon {

namespace {

char reversed(char byte) {
    auto bits = static_cast<unsigned char>(byte);
    bits = static_cast<unsigned char>((bits & 0xF0) >> 4 | (bits & 0x0F) << 4);
    bits = static_cast<unsigned char>((bits & 0xCC) >> 2 | (bits & 0x33) << 2);
    bits = static_cast<unsigned char>((bits & 0xAA) >> 1 | (bits & 0x55) << 1);
    return static_cast<char>(bits);
}

void invert(std::span<unsigned char> row) {
    for (unsigned char& pixels : row) pixels = static_cast<unsigned char>(~pixels);
}

}  // namespace

std::unique_ptr<const Picture> TiffPicture::open(const std::shared_ptr<pdf::InputFile>& file) {
    const std::unique_ptr<TiffFile> tiff = TiffFile::open(file);
    constexpr std::uint32_t mostPixels = std::numeric_limits<int>::max();
    if (!tiff || tiff->width() - 1 >= mostPixels || tiff->height() - 1 >= mostPixels) return nullptr;
    if (!tiff->isBilevel() && !PictureDecoder(file, "tiff").canDecode()) return nullptr;
    const Properties properties{QSize(static_cast<int>(tiff->width()), static_cast<int>(tiff->height())),
                                tiff->resolution().value_or(Resolution{}), tiff->orientation()};
    return std::unique_ptr<const Picture>(new TiffPicture(file, properties));
}

std::optional<std::uint32_t> TiffPicture::addTo(pdf::ObjectSink& sink) const {
    const std::unique_ptr<TiffFile> tiff = TiffFile::open(file());
    if (!tiff) return std::nullopt;
    if (const auto strip = tiff->groupFourStrip()) return addStrip(*tiff, *strip, sink);
    if (tiff->isBilevel()) return addRows(*tiff, sink);
    const auto image = PictureDecoder(file(), "tiff").decode();
    if (!image) return std::nullopt;
    return ImageEncoder(*image, IccProfile(tiff->profile())).addTo(sink);
}

std::string TiffPicture::bilevelEntries(const TiffFile& tiff, pdf::ObjectSink& sink) const {
    const QSize pixels = properties().pixels;
    return "/Type/XObject/Subtype/Image/Width " + std::to_string(pixels.width()) + "/Height " +
           std::to_string(pixels.height()) + "/BitsPerComponent 1/ColorSpace" +
           IccProfile(tiff.profile()).addColorSpace(1, sink);
}

std::optional<std::uint32_t> TiffPicture::addStrip(const TiffFile& tiff, const pdf::FileRange& strip,
                                                   pdf::ObjectSink& sink) const {
    const QSize pixels = properties().pixels;
    // Some writers leave out the end-of-block mark, so the rows are to be counted. "Black" runs are of pixels of value
    // 1, which are white where TIFF says that 0 is black.
    const std::string entries = bilevelEntries(tiff, sink) + "/Filter/CCITTFaxDecode/DecodeParms<</K -1/Columns " +
                                std::to_string(pixels.width()) + "/Rows " + std::to_string(pixels.height()) +
                                "/EndOfBlock false" + (tiff.isWhiteZero() ? "" : "/BlackIs1 true") + ">>";
    if (!tiff.hasReversedBits()) return sink.addStream(entries, file(), std::array<pdf::FileRange, 1>{strip});

    std::optional<std::vector<char>> data = readExactly(*file(), strip.offset, strip.length);
    if (!data) return std::nullopt;
    std::transform(data->begin(), data->end(), data->begin(), reversed);
    return sink.addStream(entries, *data);
}

std::optional<std::uint32_t> TiffPicture::addRows(TiffFile& tiff, pdf::ObjectSink& sink) const {
    const QSize pixels = properties().pixels;
    BilevelEncoder encoder(pixels.width(), pixels.height());
    const std::vector<unsigned char> white((static_cast<std::size_t>(pixels.width()) + 7) / 8, 0xFF);
    bool isIntact = true;
    for (int number = 0; number < pixels.height(); ++number) {
        const std::span<unsigned char> row =
            isIntact ? tiff.readRow(static_cast<std::uint32_t>(number)) : std::span<unsigned char>();
        isIntact = row.size() == white.size();
        if (!isIntact && number == 0) return std::nullopt;
        if (isIntact && tiff.isWhiteZero()) invert(row);
        encoder.write(isIntact ? std::span<const unsigned char>(row) : std::span(white));
    }
    return encoder.addTo(sink, bilevelEntries(tiff, sink));
}

}  // namespace quillon
