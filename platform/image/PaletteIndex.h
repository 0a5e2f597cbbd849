#pragma once

#include <QRgb>

#include <span>
#include <utility>
#include <vector>

namespace quillon {

/// Finds the places of colours in a palette.
class PaletteIndex {
public:
    explicit PaletteIndex(std::span<const QRgb> palette);

    /// `color` is one of the palette.
    [[nodiscard]] unsigned indexOf(QRgb color);

private:
    std::vector<std::pair<QRgb, unsigned>> entries_;  // by colour
    std::pair<QRgb, unsigned> last_;                  // neighbouring pixels are often alike
};

}  // namespace quillon
