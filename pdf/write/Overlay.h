#pragma once

#include <cstdint>
#include <unordered_map>

namespace quillon::pdf {

/// Objects of a source that have another copy here than elsewhere: those of a page that is written a second time, on
/// top of those of all pages that were taken along with it.
class Overlay {
public:
    /// A copy that does not exist: references to the object become null.
    static constexpr std::uint32_t none = UINT32_MAX;

    /// `below` is asked for what this one does not have, and must outlive it; null: there is nothing below.
    explicit Overlay(const Overlay* below = nullptr) noexcept : below_(below) {}

    /// The number of the object's copy, `none`, or 0 when it has none of its own here.
    [[nodiscard]] std::uint32_t find(std::uint32_t object) const {
        for (const Overlay* layer = this; layer; layer = layer->below_) {
            if (const auto found = layer->numbers_.find(object); found != layer->numbers_.end()) return found->second;
        }
        return 0;
    }
    /// Whether this layer itself says something of the object.
    [[nodiscard]] bool covers(std::uint32_t object) const { return numbers_.contains(object); }
    void set(std::uint32_t object, std::uint32_t copy) {
        // A thousand copies of one page have as many overlays, each of which holds little.
        if (numbers_.empty()) numbers_.reserve(1);
        numbers_[object] = copy;
    }

private:
    std::unordered_map<std::uint32_t, std::uint32_t> numbers_;
    const Overlay* below_;
};

}  // namespace quillon::pdf
