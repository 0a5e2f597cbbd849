#include "pdf/join/NameTable.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace quillon::pdf {
namespace {

TEST(NameTable, NumbersWhatIsAdded) {
    NameTable table;
    EXPECT_FALSE(table.find("a"));
    EXPECT_EQ(table.add("a").index, 0U);
    EXPECT_EQ(table.add("b").index, 1U);
    EXPECT_EQ(table.find("a"), 0U);
    EXPECT_EQ(table.find("b"), 1U);
    EXPECT_EQ(table.at(1), "b");
    EXPECT_EQ(table.size(), 2U);
    EXPECT_FALSE(table.contains("c"));
}

TEST(NameTable, KeepsTheFirstOfEqualNames) {
    NameTable table;
    EXPECT_TRUE(table.add("a").isNew);
    const auto again = table.add(std::string("a"));
    EXPECT_FALSE(again.isNew);
    EXPECT_EQ(again.index, 0U);
    EXPECT_EQ(table.size(), 1U);
}

TEST(NameTable, TheEmptyNameIsAName) {
    NameTable table;
    EXPECT_FALSE(table.contains(""));
    EXPECT_TRUE(table.add({}).isNew);
    EXPECT_TRUE(table.contains(""));
    EXPECT_FALSE(table.add("").isNew);
}

TEST(NameTable, KeepsWhatDoesNotStay) {
    TextArena texts;
    NameTable table;
    for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(table.add("a name that goes " + std::to_string(i), texts).isNew);
    EXPECT_EQ(table.find("a name that goes 9999"), 9999U);
    EXPECT_EQ(table.at(0), "a name that goes 0");
    EXPECT_FALSE(table.add("a name that goes 5", texts).isNew);
}

TEST(NameTable, GrowsAndLosesNothing) {
    NameTable table;
    table.reserve(100);
    std::deque<std::string> names;
    for (std::uint32_t i = 0; i < 50'000; ++i) {
        ASSERT_EQ(table.add(names.emplace_back("section." + std::to_string(i))).index, i);
    }
    for (std::uint32_t i = 0; i < 50'000; ++i) ASSERT_EQ(table.find(names[i]), i);
    EXPECT_FALSE(table.contains("section.50000"));
}

}  // namespace
}  // namespace quillon::pdf
