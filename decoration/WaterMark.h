#pragma once

#include "platform/pdf/PDFPage.h"

#include <memory>

namespace quillon {

/// A page of the output: what it holds, with the decoration of Utility's state painted over it whenever it is drawn.
class WaterMark final : public PDFPage {
public:
    /// A blank page, or the shell of a page that a document reads from its file.
    WaterMark() = default;

    /// A page that shows `image` and has its size; null when there is no image.
    [[nodiscard]] static std::shared_ptr<WaterMark> initWithImage(std::shared_ptr<const Image> image);

    void drawWithBox(PDFDisplayBox box) override;

    /// Draws the watermark's text in the middle of the box's width, and at the fraction `Height` of its height, counted
    /// from the origin of the page's user space and not from the box: the line box of the text stands with its lower
    /// left corner on whole points there. Where one of them is beyond 1000, it is 500.
    void doAddWatermark(PDFDisplayBox box, float Height);
    /// Draws the next page number at the bottom of the user space, in a box as wide as `box` that begins at its origin.
    /// Stops the program when the position is none of the three.
    void addPageNumber(PDFDisplayBox box);

private:
    explicit WaterMark(std::shared_ptr<const Image> image);
};

}  // namespace quillon
