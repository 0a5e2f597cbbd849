#pragma once

#include "platform/image/RasterImage.h"

#include <QRgb>

#include <optional>
#include <vector>

namespace quillon {

/// What a picture makes use of.
struct PictureFacts {
    bool isEightBit = true;  ///< no sample needs more than 8 bits
    bool isGray = true;
    bool isOpaque = true;
    bool hasHardAlpha = true;  ///< every pixel is either opaque or fully transparent
    /// The colours without their alpha, in order of their first appearance; nothing when there are more than 256 or one
    /// needs more than 8 bits.
    std::optional<std::vector<QRgb>> colors;

    /// Looks at every pixel.
    [[nodiscard]] static PictureFacts of(const RasterImage& image);
};

}  // namespace quillon
