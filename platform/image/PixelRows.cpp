#include "platform/image/PixelRows.h"

#include <QPixelFormat>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon {

namespace {

constexpr qint64 stripBytes = qint64{1} << 20;

// The format on the way to 16 bits. Formats of few bits are widened to 8 bits first: expanded to 16 at once, their
// samples would look as if they had more than 8.
QImage::Format intermediateFormat(const QImage& image) {
    const QPixelFormat format = image.pixelFormat();
    const bool hasWideSamples =
        image.depth() > 32 || image.format() == QImage::Format_Grayscale16 || format.redSize() > 8;
    if (hasWideSamples) return QImage::Format_RGBA64;
    return image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
}

bool isEightBit(quint16 sample) {
    return (sample >> 8) == (sample & 0xFF);
}

// The set of colours seen so far, up to one more than a palette can hold.
class ColorSet {
public:
    static constexpr std::size_t mostColors = 256;

    ColorSet() { slots_.fill(empty); }

    [[nodiscard]] bool isFull() const { return colors_.size() > mostColors; }
    [[nodiscard]] std::vector<QRgb> colors() && { return std::move(colors_); }

    void insert(QRgb color) {
        if (color == last_ && !colors_.empty()) return;
        last_ = color;
        std::size_t slot = (color * 0x9E3779B1U >> 16) % slots_.size();
        for (; slots_[slot] != empty; slot = (slot + 1) % slots_.size()) {
            if (colors_[slots_[slot]] == color) return;
        }
        slots_[slot] = static_cast<std::uint16_t>(colors_.size());
        colors_.push_back(color);
    }

private:
    static constexpr std::uint16_t empty = 0xFFFF;

    std::array<std::uint16_t, 1024> slots_{};
    std::vector<QRgb> colors_;
    QRgb last_ = 0;
};

}  // namespace

void PixelRows::forEach(const std::function<void(std::span<const QRgba64>)>& visit) const {
    const QImage::Format intermediate = intermediateFormat(image_);
    const qint64 rowBytes = std::max<qint64>(image_.width() * qint64{sizeof(QRgba64)}, 1);
    const int stripHeight = static_cast<int>(std::clamp<qint64>(stripBytes / rowBytes, 1, image_.height()));
    for (int top = 0; top < image_.height(); top += stripHeight) {
        const int height = std::min(stripHeight, image_.height() - top);
        QImage strip(image_.constScanLine(top), image_.width(), height, image_.bytesPerLine(), image_.format());
        strip.setColorTable(image_.colorTable());
        const QImage wide = strip.convertToFormat(intermediate).convertToFormat(QImage::Format_RGBA64);
        for (int row = 0; row < height; ++row) {
            const auto* const pixels = reinterpret_cast<const QRgba64*>(wide.constScanLine(row));
            visit(std::span(pixels, static_cast<std::size_t>(image_.width())));
        }
    }
}

PixelRows::Facts PixelRows::facts() const {
    Facts facts;
    ColorSet colors;
    forEach([&](std::span<const QRgba64> row) {
        for (const QRgba64 pixel : row) {
            const quint16 red = pixel.red();
            const quint16 green = pixel.green();
            const quint16 blue = pixel.blue();
            const quint16 alpha = pixel.alpha();
            facts.isGray = facts.isGray && red == green && green == blue;
            facts.isOpaque = facts.isOpaque && alpha == 0xFFFF;
            facts.hasHardAlpha = facts.hasHardAlpha && (alpha == 0xFFFF || alpha == 0);
            facts.isEightBit =
                facts.isEightBit && isEightBit(red) && isEightBit(green) && isEightBit(blue) && isEightBit(alpha);
            if (!colors.isFull()) colors.insert(qRgb(red >> 8, green >> 8, blue >> 8));
        }
    });
    if (facts.isEightBit && !colors.isFull()) facts.colors = std::move(colors).colors();
    return facts;
}

}  // namespace quillon
