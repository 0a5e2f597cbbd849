#include "pdf/object/StopMask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

namespace quillon::pdf {
namespace {

template <char... stops>
std::uint64_t expectedOf(std::string_view block) {
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < block.size(); ++i) mask |= std::uint64_t{((block[i] == stops) || ...)} << i;
    return mask;
}

/// Tries `mask` with blocks of every length; each character in turn stands at about half of the places.
template <char... stops>
void check(std::uint64_t (*mask)(std::string_view)) {
    std::mt19937 random(11);
    for (std::size_t length = 0; length <= 64; ++length) {
        for (unsigned code = 0; code < 256; ++code) {
            std::string text;
            for (std::size_t i = 0; i < length; ++i) text += static_cast<char>(code + (random() % 2) * random());
            // What stands behind a block does not count, and nothing need stand there.
            const auto alone = std::make_unique<char[]>(length);
            std::ranges::copy(text, alone.get());
            text.append(64, static_cast<char>(code));
            const std::string_view block = std::string_view(text).substr(0, length);
            ASSERT_EQ(mask(block), expectedOf<stops...>(block)) << length << ' ' << code;
            ASSERT_EQ(mask({alone.get(), length}), expectedOf<stops...>(block)) << length << ' ' << code;
        }
    }
}

/// Stops that share their upper or lower four bits, in eight groups, the most there can be.
template <class Check>
void checkAll(Check check) {
    check.template operator()<'P'>();
    check.template operator()<'(', '<', '>', '[', ']', '%', 'R', 'j', 'D', '#'>();
    check.template operator()<'\x01', '\x1F', '\x2F', '\x31', 'A', 'O', '\x80', '\x8F', '\xF0', '\xFF', '\x7F'>();
}

TEST(StopMask, TellsTheStopsOnAnyProcessor) {
    checkAll([]<char... stops>() { check<stops...>(&StopMask<stops...>::of); });
}

TEST(StopMask, TellsTheSameWithWideVectors) {
#ifdef __SSE2__
    if (!hasWideVectors) GTEST_SKIP() << "the processor has none";
    checkAll([]<char... stops>() { check<stops...>(&StopMask<stops...>::ofWide); });
#else
    GTEST_SKIP() << "made for another kind of processor";
#endif
}

TEST(StopMask, TellsTheSameWhicheverWayIsTaken) {
    checkAll([]<char... stops>() { check<stops...>(&StopMask<stops...>::fastest); });
}

}  // namespace
}  // namespace quillon::pdf
