#include "pdf/object/TextArena.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillon::pdf {
namespace {

TEST(TextArena, KeepsTextsWhereTheyAre) {
    TextArena arena;
    std::vector<std::string_view> kept;
    for (int i = 0; i < 20'000; ++i) kept.push_back(arena.keep("text " + std::to_string(i)));
    for (int i = 0; i < 20'000; ++i) ASSERT_EQ(kept[static_cast<std::size_t>(i)], "text " + std::to_string(i));
}

TEST(TextArena, TakesTextsOfAnyLength) {
    TextArena arena;
    EXPECT_EQ(arena.keep(""), "");
    const std::string_view before = arena.keep("before");
    const std::string large(1'000'000, 'x');
    EXPECT_EQ(arena.keep(large), large);
    EXPECT_EQ(arena.keep("behind"), "behind");
    EXPECT_EQ(before, "before");
}

}  // namespace
}  // namespace quillon::pdf
