#pragma once

#include "pdf/object/OwnedText.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace quillon::pdf {

/// Keeps texts side by side in larger pieces of memory, each of which ends with the last text in it. For texts of some
/// kilobytes that come together and go together: that the heap grows and shrinks for each of them takes as long as
/// filling them. Not thread-safe, but what is kept may end on any thread.
class TextSlabs {
public:
    [[nodiscard]] OwnedText keep(std::string_view text) {
        if (text.size() > left_) grow(text.size());
        char* const place = next_;
        if (!text.empty()) std::memcpy(place, text.data(), text.size());
        next_ += text.size();
        left_ -= text.size();
        return {slab_, {place, text.size()}};
    }

private:
    static constexpr std::size_t firstSlab = 32U << 10U;
    static constexpr std::size_t largestSlab = 512U << 10U;

    void grow(std::size_t wanted) {
        left_ = std::max(wanted, slabBytes_);
        slabBytes_ = std::min(2 * slabBytes_, largestSlab);
        slab_ = std::make_shared_for_overwrite<char[]>(left_);
        next_ = slab_.get();
    }

    std::shared_ptr<char[]> slab_;
    char* next_ = nullptr;  // what is free of the slab
    std::size_t left_ = 0;
    std::size_t slabBytes_ = firstSlab;  // of the next
};

}  // namespace quillon::pdf
