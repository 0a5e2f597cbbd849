#pragma once

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quillon::pdf {

/// Finds the characters `stops` of a text one after the other. Looks at 64 bytes at a time and remembers what it saw in
/// them, which is several times faster than looking at each byte.
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

private:
    static constexpr std::size_t blockBytes = 64;

    void look(std::size_t at) noexcept {
        // The last block of a text is the one that ends with it.
        const bool reaches = at + blockBytes > text_.size();
        begin_ = !reaches ? at : text_.size() > blockBytes ? text_.size() - blockBytes : 0;
        end_ = begin_ + blockBytes;
        seen_ = text_.size() >= blockBytes ? stopsIn(text_.data() + begin_) : stopsInShort();
    }

    /// A bit for each byte of a text that is shorter than a block.
    [[nodiscard]] std::uint64_t stopsInShort() const noexcept {
        std::uint64_t seen = 0;
#ifdef __SSE2__
        const std::size_t size = text_.size();
        if (size < step) {
            // No stop is the character with the code 0.
            std::array<char, step> all{};
            std::memcpy(all.data(), text_.data(), size);
            return stopsInStep(all.data());
        }
        for (std::size_t i = 0; i + step < size; i += step) seen |= stopsInStep(text_.data() + i) << i;
        // The last step ends with the text; what it shares with the one before is seen twice.
        seen |= stopsInStep(text_.data() + size - step) << (size - step);
#else
        for (std::size_t i = 0; i < text_.size(); ++i) seen |= std::uint64_t{((text_[i] == stops) || ...)} << i;
#endif
        return seen;
    }

    /// A bit for each byte of the block, the lowest for the first.
    static std::uint64_t stopsIn(const char* block) noexcept {
        std::uint64_t seen = 0;
#ifdef __SSE2__
        for (std::size_t i = 0; i < blockBytes; i += step) seen |= stopsInStep(block + i) << i;
#else
        for (std::size_t i = 0; i < blockBytes; ++i) seen |= std::uint64_t{((block[i] == stops) || ...)} << i;
#endif
        return seen;
    }

#ifdef __SSE2__
    static constexpr std::size_t step = 16;

    static std::uint64_t stopsInStep(const char* at) noexcept {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        __m128i equal = _mm_setzero_si128();
        ((equal = _mm_or_si128(equal, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(stops)))), ...);
        return static_cast<std::uint32_t>(_mm_movemask_epi8(equal));
    }
#endif

    std::string_view text_;
    std::size_t begin_ = 0;  // of the block that was looked at
    std::size_t end_ = 0;
    std::uint64_t seen_ = 0;
};

}  // namespace quillon::pdf
