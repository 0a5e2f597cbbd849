#include "platform/pdf/PDFDestination.h"

#include <utility>

namespace quillon {

PDFDestination::PDFDestination(std::shared_ptr<PDFPage> page, QPointF atPoint)
    : page_(std::move(page)), point_(atPoint) {}

}  // namespace quillon
