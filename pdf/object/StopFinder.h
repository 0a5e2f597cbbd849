#pragma once

#include "pdf/object/StopMask.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillon::pdf {

/// Finds the characters `stops` of a text one after the other, or those that are none. Looks at 64 bytes at a time and
/// remembers what it saw in them, which is several times faster than looking at each byte.
template <char... stops>
class StopFinder {
public:
    explicit StopFinder(std::string_view text) noexcept : text_(text) {}

    /// The first place from `at` on that has a stop; the size of the text if there is none. `at` never goes back.
    [[nodiscard]] std::size_t find(std::size_t at) noexcept {
        assert(at >= begin_);
        while (at < text_.size()) {
            if (at >= end_) look(at);
            const std::uint64_t left = seen_ >> (at - begin_);
            if (left != 0) return at + static_cast<std::size_t>(std::countr_zero(left));
            at = end_;
        }
        return text_.size();
    }

    /// The first place from `at` on that has none; the size of the text if all have. `at` never goes back.
    [[nodiscard]] std::size_t findOther(std::size_t at) noexcept {
        assert(at >= begin_);
        while (at < text_.size()) {
            if (at >= end_) look(at);
            const std::uint64_t others = ~seen_ >> (at - begin_);
            if (others != 0) return std::min(at + static_cast<std::size_t>(std::countr_zero(others)), text_.size());
            at = end_;
        }
        return text_.size();
    }

private:
    using Mask = StopMask<stops...>;

    void look(std::size_t at) noexcept {
        // The last block of a text is the one that ends with it.
        const bool reaches = at + Mask::most > text_.size();
        begin_ = !reaches ? at : text_.size() > Mask::most ? text_.size() - Mask::most : 0;
        end_ = begin_ + Mask::most;
        seen_ = Mask::fastest({text_.data() + begin_, std::min(Mask::most, text_.size())});
    }

    std::string_view text_;
    std::size_t begin_ = 0;  // of the block that was looked at
    std::size_t end_ = 0;
    std::uint64_t seen_ = 0;
};

}  // namespace quillon::pdf
