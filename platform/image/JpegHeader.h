#pragma once

#include "pdf/io/InputFile.h"
#include "pdf/write/ObjectSink.h"
#include "platform/image/ExifTags.h"
#include "platform/image/Resolution.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillon {

/// What stands before the first scan of a JPEG file.
struct JpegHeader {
    std::uint8_t startOfFrame = 0;  ///< the second byte of the frame's marker, which names the coding process
    int precision = 0;              ///< bits of a sample
    int width = 0;                  ///< pixels
    int height = 0;                 ///< pixels
    int components = 0;
    std::array<std::uint8_t, 4> componentIds{};
    bool hasJfifMarker = false;
    bool hasAdobeMarker = false;
    std::optional<Resolution> resolution;  ///< JFIF's, or where that says none EXIF's
    Orientation orientation;
    /// Where the pieces of the ICC profile lie, in the order of their numbers; empty when some are missing.
    std::vector<pdf::FileRange> profile;

    /// Nothing when the file does not begin as a JPEG file or has no scan.
    [[nodiscard]] static std::optional<JpegHeader> read(pdf::InputFile& file);

    /// Whether the file is one that every reader of /DCTDecode streams takes: Huffman coded, baseline, extended or
    /// progressive, of 8 bits and 1, 3 or 4 components.
    [[nodiscard]] bool isEmbeddable() const;

    /// Whether three components are red, green and blue although no Adobe marker says so. Readers of PDF take them for
    /// YCbCr unless told.
    [[nodiscard]] bool isUnmarkedRgb() const;
};

}  // namespace quillon
