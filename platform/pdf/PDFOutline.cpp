#include "platform/pdf/PDFOutline.h"

#include <algorithm>
#include <utility>

namespace quillon {

std::shared_ptr<PDFOutline> PDFOutline::childAtIndex(int index) const {
    if (index < 0 || index >= numberOfChildren()) return nullptr;
    return children_[static_cast<std::size_t>(index)];
}

void PDFOutline::insertChild(std::shared_ptr<PDFOutline> child, int atIndex) {
    if (!child) return;
    children_.insert(children_.begin() + std::clamp(atIndex, 0, numberOfChildren()), std::move(child));
}

}  // namespace quillon
