#pragma once

#include <QImage>
#include <QRgba64>

#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace quillon {

/// The pixels of a picture of any QImage format, row by row, as 16-bit RGBA that is not premultiplied. A sample of 8
/// bits reads as 257 times its value. Only a strip of the picture is converted at a time.
class PixelRows {
public:
    /// What a picture makes use of.
    struct Facts {
        bool isEightBit = true;  ///< no sample needs more than 8 bits
        bool isGray = true;
        bool isOpaque = true;
        bool hasHardAlpha = true;  ///< every pixel is either opaque or fully transparent
        /// The colours without their alpha, in order of their first appearance; nothing when there are more than 256 or
        /// one needs more than 8 bits.
        std::optional<std::vector<QRgb>> colors;
    };

    explicit PixelRows(const QImage& image) : image_(image) {}

    [[nodiscard]] int width() const { return image_.width(); }
    [[nodiscard]] int height() const { return image_.height(); }

    void forEach(const std::function<void(std::span<const QRgba64>)>& visit) const;

    [[nodiscard]] Facts facts() const;

private:
    QImage image_;
};

}  // namespace quillon
