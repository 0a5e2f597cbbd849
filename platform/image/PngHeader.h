#pragma once

#include "pdf/io/InputFile.h"
#include "pdf/write/ObjectSink.h"
#include "platform/image/ExifTags.h"
#include "platform/image/Resolution.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillon {

/// The chunks of a PNG file, without its pixels.
struct PngHeader {
    enum class ColorType : std::uint8_t { Gray = 0, Rgb = 2, Palette = 3, GrayAlpha = 4, Rgba = 6 };

    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    int bitDepth = 0;
    ColorType colorType = ColorType::Gray;
    bool isInterlaced = false;
    std::vector<char> palette;       ///< PLTE: three bytes for each colour
    std::vector<char> transparency;  ///< tRNS as it stands in the file
    pdf::FileRange profile;          ///< the iCCP chunk's data, of length 0 when there is none
    std::optional<Resolution> resolution;
    Orientation orientation;
    std::vector<pdf::FileRange> pixelData;  ///< the IDAT chunks' data in order
    /// Whether the chunks follow one another as they should up to IEND and the pixel data begins as a zlib stream.
    bool isComplete = false;

    /// Nothing when the file does not begin as a PNG file with a valid IHDR chunk. A file that is cut short gives what
    /// is there.
    [[nodiscard]] static std::optional<PngHeader> read(pdf::InputFile& file);

    /// Colour components without alpha; a palette index is one.
    [[nodiscard]] int components() const { return colorType == ColorType::Rgb || colorType == ColorType::Rgba ? 3 : 1; }
    [[nodiscard]] bool hasAlphaChannel() const {
        return colorType == ColorType::GrayAlpha || colorType == ColorType::Rgba;
    }
};

}  // namespace quillon
