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

private:
    explicit WaterMark(std::shared_ptr<const Image> image);
};

}  // namespace quillon
