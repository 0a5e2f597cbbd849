#pragma once

#include <QMetaType>

#include <algorithm>

namespace quillon {

/// A colour of the sRGB space. Components run from 0 to 1; others are clamped.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;  ///< 0 invisible to 1 opaque

    [[nodiscard]] static constexpr Color sRGB(double red, double green, double blue, double alpha) noexcept {
        const auto clamped = [](double value) { return value > 0 ? std::min(value, 1.0) : 0.0; };
        return {clamped(red), clamped(green), clamped(blue), clamped(alpha)};
    }
    [[nodiscard]] static constexpr Color redColor() noexcept { return {1, 0, 0, 1}; }
    [[nodiscard]] static constexpr Color blackColor() noexcept { return {0, 0, 0, 1}; }

    friend auto operator<=>(const Color&, const Color&) = default;
};

}  // namespace quillon

Q_DECLARE_METATYPE(quillon::Color)
