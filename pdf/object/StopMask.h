#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace quillon::pdf {

#ifdef __SSE2__
/// Whether the processor has AVX2.
inline const bool hasWideVectors = __builtin_cpu_supports("avx2") != 0;
#endif

/// Tells which of up to 64 bytes are one of `stops`, none of which is the character with the code 0.
template <char... stops>
class StopMask {
public:
    static constexpr std::size_t most = 64;

    /// A bit for each byte of the block, the lowest for the first.
    [[nodiscard]] static std::uint64_t fastest(std::string_view block) noexcept {
#ifdef __SSE2__
        if (hasWideVectors) return ofWide(block);
#endif
        return of(block);
    }

    /// The same on any processor.
    [[nodiscard]] static std::uint64_t of(std::string_view block) noexcept {
        std::uint64_t seen = 0;
#ifdef __SSE2__
        const std::size_t size = block.size();
        if (size < step) return inStep(padded(block).data());
        for (std::size_t i = 0; i + step < size; i += step) seen |= inStep(block.data() + i) << i;
        // The last step ends with the block; what it shares with the one before is seen twice.
        seen |= inStep(block.data() + size - step) << (size - step);
#else
        for (std::size_t i = 0; i < block.size(); ++i) seen |= std::uint64_t{((block[i] == stops) || ...)} << i;
#endif
        return seen;
    }

#ifdef __SSE2__
    /// The same on one that has AVX2, several times faster.
    [[nodiscard, gnu::target("avx2")]] static std::uint64_t ofWide(std::string_view block) noexcept {
        const std::size_t size = block.size();
        if (size < step) return inHalf(padded(block).data());
        const char* const begin = block.data();
        if (size < wideStep) return inHalf(begin) | inHalf(begin + size - step) << (size - step);
        return inWideStep(begin) | inWideStep(begin + size - wideStep) << (size - wideStep);
    }
#endif

private:
    using Table = std::array<char, 16>;

    // Two tables tell all stops: a bit stands for those with the same upper four bits. A character is a stop if what
    // the tables say of its lower and of its upper four bits has a bit in common.
    struct Tables {
        Table byLower{};
        Table byUpper{};
        bool fits = true;
    };

    static constexpr Tables tables() noexcept {
        Tables tables;
        unsigned groups = 0;
        for (const char stop : {stops...}) {
            const auto code = static_cast<unsigned char>(stop);
            char& upper = tables.byUpper[code >> 4U];
            if (upper == 0) {
                tables.fits = tables.fits && groups < 8;
                upper = static_cast<char>(1U << groups++);
            }
            tables.byLower[code & 15U] = static_cast<char>(tables.byLower[code & 15U] | upper);
        }
        return tables;
    }

    static constexpr Tables known = tables();
    static_assert(known.fits, "the stops have more than eight different upper halves");
    static_assert(((stops != '\0') && ...));

#ifdef __SSE2__
    static constexpr std::size_t step = 16;
    static constexpr std::size_t wideStep = 32;

    static Table padded(std::string_view block) noexcept {
        Table all{};
        std::memcpy(all.data(), block.data(), block.size());
        return all;
    }

    static std::uint64_t inStep(const char* at) noexcept {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        __m128i equal = _mm_setzero_si128();
        ((equal = _mm_or_si128(equal, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(stops)))), ...);
        return static_cast<std::uint32_t>(_mm_movemask_epi8(equal));
    }

    [[gnu::target("avx2"), gnu::always_inline]] static inline std::uint64_t inHalf(const char* at) noexcept {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i four = _mm_set1_epi8(15);
        const __m128i lower = _mm_and_si128(bytes, four);
        const __m128i upper = _mm_and_si128(_mm_srli_epi16(bytes, 4), four);
        const __m128i byLower = _mm_loadu_si128(reinterpret_cast<const __m128i*>(known.byLower.data()));
        const __m128i byUpper = _mm_loadu_si128(reinterpret_cast<const __m128i*>(known.byUpper.data()));
        const __m128i common = _mm_and_si128(_mm_shuffle_epi8(byLower, lower), _mm_shuffle_epi8(byUpper, upper));
        const __m128i none = _mm_cmpeq_epi8(common, _mm_setzero_si128());
        return 0xFFFFU ^ static_cast<std::uint32_t>(_mm_movemask_epi8(none));
    }

    [[gnu::target("avx2"), gnu::always_inline]] static inline std::uint64_t inWideStep(const char* at) noexcept {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
        const __m256i four = _mm256_set1_epi8(15);
        const __m256i lower = _mm256_and_si256(bytes, four);
        const __m256i upper = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), four);
        const __m256i byLower =
            _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(known.byLower.data())));
        const __m256i byUpper =
            _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(known.byUpper.data())));
        const __m256i common =
            _mm256_and_si256(_mm256_shuffle_epi8(byLower, lower), _mm256_shuffle_epi8(byUpper, upper));
        const __m256i none = _mm256_cmpeq_epi8(common, _mm256_setzero_si256());
        return ~static_cast<std::uint32_t>(_mm256_movemask_epi8(none));
    }
#endif
};

}  // namespace quillon::pdf
