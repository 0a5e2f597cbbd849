#include "decoration/WaterMark.h"

#include <utility>

namespace quillon {

WaterMark::WaterMark(std::shared_ptr<const Image> image) : PDFPage(std::move(image)) {}

std::shared_ptr<WaterMark> WaterMark::initWithImage(std::shared_ptr<const Image> image) {
    // Without this a picture that cannot be read would become a blank page, which is what PDFPage makes of no image.
    if (!image) return nullptr;
    return std::shared_ptr<WaterMark>(new WaterMark(std::move(image)));
}

void WaterMark::drawWithBox(PDFDisplayBox box) {
    PDFPage::drawWithBox(box);
}

}  // namespace quillon
