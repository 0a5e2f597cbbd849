#include "platform/pdf/DrawingContext.h"

namespace quillon {

namespace {

thread_local DrawingContext* currentContext = nullptr;

}  // namespace

DrawingContext::DrawingContext(const PDFPage& page, std::any& store) noexcept
    : page_(page), store_(store), outer_(currentContext) {
    currentContext = this;
}

DrawingContext::~DrawingContext() {
    currentContext = outer_;
}

DrawingContext* DrawingContext::current() noexcept {
    return currentContext;
}

void DrawingContext::restoreGraphicsState() {
    if (savedColors_.empty()) return;
    color_ = savedColors_.back();
    savedColors_.pop_back();
}

void DrawingContext::draw(std::shared_ptr<const Drawing> drawing, QPointF origin) {
    marks_.push_back({std::move(drawing), origin, color_});
}

}  // namespace quillon
