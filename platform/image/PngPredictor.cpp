#include "platform/image/PngPredictor.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace quillon {

namespace {

int paeth(int left, int above, int aboveLeft) {
    const int toLeft = std::abs(above - aboveLeft);
    const int toAbove = std::abs(left - aboveLeft);
    const int toAboveLeft = std::abs(left + above - 2 * aboveLeft);
    const int aboveOrCorner = toAbove <= toAboveLeft ? above : aboveLeft;
    return toLeft <= toAbove && toLeft <= toAboveLeft ? left : aboveOrCorner;
}

// The sum of the differences' sizes, a difference above 127 being a negative one.
std::uint64_t cost(std::span<const unsigned char> differences) {
    std::uint64_t sum = 0;
    for (const unsigned char difference : differences) sum += std::min<unsigned>(difference, 256U - difference);
    return sum;
}

}  // namespace

PngPredictor::PngPredictor(std::size_t rowLength, std::size_t pixelLength)
    : pixelLength_(pixelLength), previous_(pixelLength + rowLength), current_(pixelLength + rowLength) {
    for (std::size_t number = 0; number < filterCount; ++number) {
        candidates_[number].resize(1 + rowLength);
        candidates_[number][0] = static_cast<unsigned char>(number);
    }
}

std::span<const unsigned char> PngPredictor::filter(std::span<const unsigned char> row) {
    std::copy(row.begin(), row.end(), current_.begin() + static_cast<std::ptrdiff_t>(pixelLength_));
    const unsigned char* const here = current_.data() + pixelLength_;
    const unsigned char* const left = current_.data();
    const unsigned char* const above = previous_.data() + pixelLength_;
    const unsigned char* const aboveLeft = previous_.data();
    const auto fill = [&](std::size_t number, auto prediction) {
        unsigned char* const out = candidates_[number].data() + 1;
        for (std::size_t index = 0; index < row.size(); ++index)
            out[index] = static_cast<unsigned char>(here[index] - prediction(index));
    };
    fill(0, [](std::size_t) { return 0; });
    fill(1, [&](std::size_t index) { return left[index]; });
    fill(2, [&](std::size_t index) { return above[index]; });
    fill(3, [&](std::size_t index) { return (left[index] + above[index]) / 2; });
    fill(4, [&](std::size_t index) { return paeth(left[index], above[index], aboveLeft[index]); });
    std::swap(previous_, current_);
    return *std::min_element(candidates_.begin(), candidates_.end(), [](const auto& one, const auto& other) {
        return cost(std::span(one).subspan(1)) < cost(std::span(other).subspan(1));
    });
}

}  // namespace quillon
