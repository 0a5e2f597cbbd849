#include "decoration/WaterMark.h"

#include "decoration/Utility.h"
#include "platform/AssertionFailure.h"
#include "platform/ToolkitVersion.h"
#include "platform/pdf/DrawingContext.h"
#include "platform/text/Font.h"
#include "platform/text/TextDrawing.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace quillon {

namespace {

/// Toward zero; what no 32-bit integer holds becomes the nearest.
std::int32_t truncated(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(value, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

constexpr Color watermarkColor() {
    // The red component is beyond its range, and clamped.
    if constexpr (toolkitVersion > 1038.0) return Color::sRGB(255.0, 0.0, 0.0, 0.6);
    return Color::redColor();
}

TextAttributes watermarkAttributes() {
    constexpr double size = 20.0;
    return attributesWithObjectsAndKeys(
        {{Font::objectWithName(QStringLiteral("Microsoft Sans Serif"), size), NSFontAttributeName},
         {QVariant::fromValue(Color::redColor()), NSStrikethroughColorAttributeName},
         {QVariant::fromValue(watermarkColor()), NSForegroundColorAttributeName}});
}

}  // namespace

WaterMark::WaterMark(std::shared_ptr<const Image> image) : PDFPage(std::move(image)) {}

std::shared_ptr<WaterMark> WaterMark::initWithImage(std::shared_ptr<const Image> image) {
    // Without this a picture that cannot be read would become a blank page, which is what PDFPage makes of no image.
    if (!image) return nullptr;
    return std::shared_ptr<WaterMark>(new WaterMark(std::move(image)));
}

void WaterMark::drawWithBox(PDFDisplayBox box) {
    PDFPage::drawWithBox(box);
    constexpr float middle = 0.5F;
    if (Utility::shouldAddWaterMark()) doAddWatermark(box, middle);
    if (Utility::shouldAddPageNumber()) addPageNumber(box);
}

void WaterMark::doAddWatermark(PDFDisplayBox box, float Height) {
    DrawingContext* const context = DrawingContext::current();
    if (!context) return;
    context->saveGraphicsState();
    const TextAttributes attributes = watermarkAttributes();
    const QString text = Utility::waterMarkContent();
    const QRectF bounds = boundsForBox(box);
    const double width = sizeWithAttributes(text, attributes).width();
    constexpr std::int32_t farthest = 1000;
    constexpr std::int32_t instead = 500;
    std::int32_t x = truncated(bounds.x() + (bounds.width() - width) / 2.0);
    std::int32_t y = truncated(static_cast<double>(Height) * bounds.height());
    if (x > farthest) x = instead;
    if (y > farthest) y = instead;
    drawAtPoint(text, QPointF(x, y), attributes);
    context->restoreGraphicsState();
}

void WaterMark::addPageNumber(PDFDisplayBox box) {
    DrawingContext* const context = DrawingContext::current();
    if (!context) return;
    // Not restored: nothing is drawn on the page after the number.
    context->saveGraphicsState();
    const TextAttributes& attributes = Utility::pageNumberStringAttri();
    const QString text = Utility::pageNumberString();
    const double width = sizeWithAttributes(text, attributes).width();
    const double boxWidth = boundsForBox(box).width();
    std::int32_t x = 0;
    switch (Utility::getPageNumberPosition()) {
        case 0:
            break;
        case 1:
            x = truncated((boxWidth - width) / 2.0);
            break;
        case 2:
            x = truncated(boxWidth - 1.5 * width);
            break;
        default:
            assertionFailure("-[WaterMark addPageNumber:]", "WaterMark", 90, "NO");
    }
    drawAtPoint(text, QPointF(x, 0), attributes);
}

}  // namespace quillon
