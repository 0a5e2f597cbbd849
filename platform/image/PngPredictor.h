#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace quillon {

/// Filters rows of samples as PNG does (ISO 32000-2, 7.4.4.4, predictor 15), choosing for each row the filter that
/// leaves the smallest differences. Neighbouring samples of scans and photographs are alike, and differences deflate
/// well.
class PngPredictor {
public:
    /// In bytes.
    PngPredictor(std::size_t rowLength, std::size_t pixelLength);

    /// The filtered row with its filter's number in front. Valid until the next call.
    [[nodiscard]] std::span<const unsigned char> filter(std::span<const unsigned char> row);

private:
    static constexpr std::size_t filterCount = 5;

    std::size_t pixelLength_;
    std::vector<unsigned char> previous_;  // pixelLength_ zeros, then the row above
    std::vector<unsigned char> current_;   // pixelLength_ zeros, then the row
    std::array<std::vector<unsigned char>, filterCount> candidates_;
};

}  // namespace quillon
