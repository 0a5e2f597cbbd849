#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Keeps texts by the ten thousand in few pieces of memory. They stay where they are, and end with the arena.
class TextArena {
public:
    [[nodiscard]] std::string_view keep(std::string_view text) {
        if (text.size() > left_) grow(text.size());
        char* const place = next_;
        if (!text.empty()) std::memcpy(place, text.data(), text.size());
        next_ += text.size();
        left_ -= text.size();
        return {place, text.size()};
    }

private:
    static constexpr std::size_t blockBytes = 64U << 10U;

    void grow(std::size_t wanted) {
        left_ = std::max(wanted, blockBytes);
        next_ = blocks_.emplace_back(std::make_unique_for_overwrite<char[]>(left_)).get();
    }

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;  // of the last block, what is free
    std::size_t left_ = 0;
};

}  // namespace quillon::pdf
