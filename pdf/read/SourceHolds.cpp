#include "pdf/read/SourceHolds.h"

#include <algorithm>

namespace quillon::pdf {

SourceHolds::~SourceHolds() {
    for (const auto& source : held_) SourceAccess::unhold(*source);
}

void SourceHolds::use(const std::shared_ptr<Source>& source) {
    if (!held_.empty() && held_.back() == source) return;
    if (const auto known = std::ranges::find(held_, source); known != held_.end()) {
        std::rotate(known, known + 1, held_.end());
        return;
    }
    if (held_.size() == most) {
        SourceAccess::unhold(*held_.front());
        held_.pop_front();
    }
    held_.push_back(source);
    SourceAccess::hold(*source);
}

}  // namespace quillon::pdf
