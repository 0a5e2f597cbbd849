#include "platform/ui/GraphicsContext.h"

#include "platform/AssertionFailure.h"

namespace quillon {
namespace {
GraphicsContext* innermost = nullptr;
}  // namespace

GraphicsContext::GraphicsContext(QPainter& painter) noexcept : painter_(painter), outer_(innermost) {
    innermost = this;
}

GraphicsContext::~GraphicsContext() {
    innermost = outer_;
}

QPainter& GraphicsContext::current() {
    if (innermost == nullptr) assertionFailure("GraphicsContext::current()", "GraphicsContext", __LINE__, "innermost");
    return innermost->painter_;
}

}  // namespace quillon
