#include "platform/image/PngPicture.h"

#include "platform/image/ByteView.h"
#include "platform/image/FileBytes.h"
#include "platform/image/IccProfile.h"
#include "platform/image/ImageEncoder.h"
#include "platform/image/PdfText.h"
#include "platform/image/PictureDecoder.h"
#include "platform/image/PngHeader.h"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <string>

namespace quillon {

namespace {

using ColorType = PngHeader::ColorType;

constexpr std::size_t mostProfileBytes = std::size_t{16} << 20;

// The size is not known beforehand, and a chunk of kilobytes can claim gigabytes.
std::vector<char> inflate(std::span<const char> compressed) {
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor(
        libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
    if (!decompressor) return {};
    std::vector<char> result;
    for (std::size_t capacity = std::size_t{64} << 10; capacity <= mostProfileBytes; capacity *= 4) {
        result.resize(capacity);
        std::size_t length = 0;
        const libdeflate_result outcome = libdeflate_zlib_decompress(
            decompressor.get(), compressed.data(), compressed.size(), result.data(), result.size(), &length);
        if (outcome == LIBDEFLATE_INSUFFICIENT_SPACE) continue;
        result.resize(outcome == LIBDEFLATE_SUCCESS ? length : 0);
        return result;
    }
    return {};
}

IccProfile profileOf(const PngHeader& header, pdf::InputFile& file) {
    if (header.profile.length == 0 || header.profile.length > mostProfileBytes) return {};
    const std::optional<std::vector<char>> chunk = readExactly(file, header.profile.offset, header.profile.length);
    if (!chunk) return {};
    // A name of at most 79 bytes, its terminator and the compression method stand before the profile.
    const auto nameEnd = std::find(chunk->begin(), chunk->end(), '\0');
    if (chunk->end() - nameEnd < 2) return {};
    return IccProfile(inflate(std::span(nameEnd + 2, chunk->end())));
}

// The /Mask of the palette entries that are fully transparent, when these lie side by side and all others are opaque.
std::optional<std::string> paletteMask(const PngHeader& header) {
    const auto isTransparent = [](char alpha) { return alpha == '\0'; };
    const auto isOpaque = [](char alpha) { return alpha == '\xFF'; };
    const auto& alphas = header.transparency;
    const auto first = std::find_if(alphas.begin(), alphas.end(), isTransparent);
    const auto last = std::find_if_not(first, alphas.end(), isTransparent);
    if (!std::all_of(alphas.begin(), first, isOpaque) || !std::all_of(last, alphas.end(), isOpaque))
        return std::nullopt;
    if (first == last) return std::string();
    return "/Mask[" + std::to_string(first - alphas.begin()) + " " + std::to_string(last - alphas.begin() - 1) + "]";
}

// The text of the entry that makes the picture's tRNS colour transparent, empty without tRNS; nothing when PDF has no
// exact equal.
std::optional<std::string> maskEntry(const PngHeader& header) {
    if (header.transparency.empty()) return std::string();
    // PDF compares samples as they are stored; readers that widen or narrow them to 8 bits first miss the colour.
    if (header.bitDepth != 8) return std::nullopt;
    if (header.colorType == ColorType::Palette) return paletteMask(header);
    const auto components = static_cast<std::size_t>(header.components());
    if (header.transparency.size() != 2 * components) return std::string();
    const ByteView samples(header.transparency);
    std::string ranges;
    for (std::size_t component = 0; component < components; ++component) {
        const std::string sample = std::to_string(samples.u16(2 * component) & 0xFF);
        ranges += (component == 0 ? "" : " ") + sample + " " + sample;
    }
    return "/Mask[" + ranges + "]";
}

bool canPassThrough(const PngHeader& header) {
    return header.isComplete && !header.isInterlaced && !header.hasAlphaChannel() && maskEntry(header).has_value();
}

std::string addColorSpace(const PngHeader& header, const IccProfile& profile, pdf::ObjectSink& sink) {
    if (header.colorType != ColorType::Palette) return profile.addColorSpace(header.components(), sink);
    const std::size_t colors = std::min(header.palette.size() / 3, std::size_t{1} << header.bitDepth);
    return "[/Indexed" + profile.addColorSpace(3, sink) + " " + std::to_string(colors - 1) +
           pdfHexString(std::span(header.palette).first(3 * colors)) + "]";
}

}  // namespace

std::unique_ptr<const Picture> PngPicture::open(const std::shared_ptr<pdf::InputFile>& file) {
    const std::optional<PngHeader> header = PngHeader::read(*file);
    if (!header || header->pixelData.empty()) return nullptr;
    if (header->colorType == ColorType::Palette && header->palette.size() < 3) return nullptr;
    if (!canPassThrough(*header) && !PictureDecoder(file, "png").canDecode()) return nullptr;
    const Properties properties{QSize(header->width, header->height), header->resolution.value_or(Resolution{}),
                                header->orientation};
    return std::unique_ptr<const Picture>(new PngPicture(file, properties));
}

std::optional<std::uint32_t> PngPicture::addTo(pdf::ObjectSink& sink) const {
    const std::optional<PngHeader> header = PngHeader::read(*file());
    if (!header) return std::nullopt;
    return canPassThrough(*header) ? addPixelData(*header, sink) : addDecoded(*header, sink);
}

std::uint32_t PngPicture::addPixelData(const PngHeader& header, pdf::ObjectSink& sink) const {
    const std::string width = std::to_string(header.width);
    const std::string bits = std::to_string(header.bitDepth);
    const std::string entries =
        "/Type/XObject/Subtype/Image/Width " + width + "/Height " + std::to_string(header.height) +
        "/BitsPerComponent " + bits + "/ColorSpace" + addColorSpace(header, profileOf(header, *file()), sink) +
        maskEntry(header).value_or("") + "/Filter/FlateDecode/DecodeParms<</Predictor 15/Colors " +
        std::to_string(header.components()) + "/BitsPerComponent " + bits + "/Columns " + width + ">>";
    return sink.addStream(entries, file(), header.pixelData);
}

std::optional<std::uint32_t> PngPicture::addDecoded(const PngHeader& header, pdf::ObjectSink& sink) const {
    auto image = PictureDecoder(file(), "png").decode();
    if (!image) image = PictureDecoder(file(), "png").decodeBeginning();
    if (!image) return std::nullopt;
    return ImageEncoder(*image, profileOf(header, *file())).addTo(sink);
}

}  // namespace quillon
