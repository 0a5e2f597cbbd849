#pragma once

namespace quillon::pdf {

/// A rectangle in default user space (ISO 32000-2, 7.9.5), in units of 1/72 inch times the page's UserUnit.
/// Always normalised by those who make one: left <= right, bottom <= top.
struct Rectangle {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;

    [[nodiscard]] double width() const noexcept { return right - left; }
    [[nodiscard]] double height() const noexcept { return top - bottom; }
};

}  // namespace quillon::pdf
