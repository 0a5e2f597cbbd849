#include "platform/pdf/DrawingContext.h"

namespace quillon {

namespace {

thread_local DrawingContext* currentContext = nullptr;

}  // namespace

DrawingContext::DrawingContext(const PDFPage& page) noexcept : page_(page), outer_(currentContext) {
    currentContext = this;
}

DrawingContext::~DrawingContext() {
    currentContext = outer_;
}

DrawingContext* DrawingContext::current() noexcept {
    return currentContext;
}

}  // namespace quillon
