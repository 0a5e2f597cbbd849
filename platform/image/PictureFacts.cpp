#include "platform/image/PictureFacts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace quillon {

namespace {

bool hasEightBits(quint16 sample) {
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

PictureFacts PictureFacts::of(const RasterImage& image) {
    PictureFacts facts;
    ColorSet colors;
    image.forEachRow([&](std::span<const QRgba64> row) {
        for (const QRgba64 pixel : row) {
            const quint16 red = pixel.red();
            const quint16 green = pixel.green();
            const quint16 blue = pixel.blue();
            const quint16 alpha = pixel.alpha();
            facts.isGray = facts.isGray && red == green && green == blue;
            facts.isOpaque = facts.isOpaque && alpha == 0xFFFF;
            facts.hasHardAlpha = facts.hasHardAlpha && (alpha == 0xFFFF || alpha == 0);
            facts.isEightBit = facts.isEightBit && hasEightBits(red) && hasEightBits(green) && hasEightBits(blue) &&
                               hasEightBits(alpha);
            if (!colors.isFull()) colors.insert(qRgb(red >> 8, green >> 8, blue >> 8));
        }
    });
    if (facts.isEightBit && !colors.isFull()) facts.colors = std::move(colors).colors();
    return facts;
}

}  // namespace quillon
