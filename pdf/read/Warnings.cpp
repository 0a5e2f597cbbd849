#include "pdf/read/Warnings.h"

#include <algorithm>

namespace quillon::pdf {

void Warnings::add(std::string_view text, std::uint32_t object, std::int64_t offset) {
    if (!lines_) lines_ = std::make_unique<std::vector<std::string>>();
    if (lines_->size() > most) return;
    if (lines_->size() == most) text = "more damage, not listed";
    std::string line = file_;
    if (object != 0 && lines_->size() < most) line += ", object " + std::to_string(object);
    if (offset >= 0 && lines_->size() < most) line += ", offset " + std::to_string(offset);
    line += ": ";
    line += text;
    if (std::ranges::find(*lines_, line) == lines_->end()) lines_->push_back(std::move(line));
}

void Warnings::keepFirst(std::size_t count) {
    if (lines_ && lines_->size() > count) lines_->resize(count);
}

const std::vector<std::string>& Warnings::lines() const noexcept {
    static const std::vector<std::string> none;
    return lines_ ? *lines_ : none;
}

}  // namespace quillon::pdf
