#include "merge/Stack.h"

namespace quillon {

std::shared_ptr<cacheData> Stack::top() const {
    const auto position = static_cast<std::size_t>(index_);
    return position < back_.size() ? back_[position] : nullptr;
}

bool Stack::isEmpty() const noexcept {
    return static_cast<std::size_t>(index_) == back_.size();
}

}  // namespace quillon
