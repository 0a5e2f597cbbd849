#include "platform/pdf/PDFDestination.h"

#include "pdf/object/Object.h"

#include <utility>

namespace quillon {

PDFDestination::PDFDestination(std::shared_ptr<PDFPage> page, QPointF atPoint)
    : page_(std::move(page)), point_(atPoint), view_("/XYZ ") {
    pdf::writeReal(view_, atPoint.x());
    view_ += ' ';
    pdf::writeReal(view_, atPoint.y());
    view_ += " null";
}

PDFDestination::PDFDestination(std::shared_ptr<PDFPage> page, QPointF atPoint, std::string view)
    : page_(std::move(page)), point_(atPoint), view_(std::move(view)) {}

}  // namespace quillon
