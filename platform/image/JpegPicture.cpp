#include "platform/image/JpegPicture.h"

#include "platform/image/FileBytes.h"
#include "platform/image/IccProfile.h"
#include "platform/image/JpegHeader.h"

#include <array>
#include <iterator>
#include <string>

namespace quillon {

namespace {

IccProfile profileOf(const JpegHeader& header, pdf::InputFile& file) {
    std::vector<char> bytes;
    for (const pdf::FileRange& range : header.profile) {
        const std::optional<std::vector<char>> piece = readExactly(file, range.offset, range.length);
        if (!piece) return {};
        bytes.insert(bytes.end(), piece->begin(), piece->end());
    }
    return IccProfile(std::move(bytes));
}

}  // namespace

std::unique_ptr<const Picture> JpegPicture::open(const std::shared_ptr<pdf::InputFile>& file) {
    const std::optional<JpegHeader> header = JpegHeader::read(*file);
    if (!header || !header->isEmbeddable()) return nullptr;
    const Properties properties{QSize(header->width, header->height), header->resolution.value_or(Resolution{}),
                                header->orientation};
    return std::unique_ptr<const Picture>(new JpegPicture(file, properties));
}

std::optional<std::uint32_t> JpegPicture::addTo(pdf::ObjectSink& sink) const {
    const std::optional<JpegHeader> header = JpegHeader::read(*file());
    if (!header || !header->isEmbeddable()) return std::nullopt;

    std::string entries = "/Type/XObject/Subtype/Image/Width " + std::to_string(header->width) + "/Height " +
                          std::to_string(header->height) + "/BitsPerComponent 8/ColorSpace" +
                          profileOf(*header, *file()).addColorSpace(header->components, sink) + "/Filter/DCTDecode";
    if (header->isUnmarkedRgb()) entries += "/DecodeParms<</ColorTransform 0>>";
    // Adobe's programs store CMYK inverted, and every program that writes their marker does as they do.
    if (header->components == 4 && header->hasAdobeMarker) entries += "/Decode[1 0 1 0 1 0 1 0]";

    const std::array<pdf::FileRange, 1> wholeFile{{{0, file()->size()}}};
    return sink.addStream(entries, file(), wholeFile);
}

}  // namespace quillon
