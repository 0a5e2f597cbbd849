#include "pdf/join/NameTable.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace quillon::pdf {
namespace {

TEST(NameTable, FindsWhatWasAdded) {
    NameTable table;
    EXPECT_FALSE(table.find("a"));
    EXPECT_TRUE(table.add("a", 1));
    EXPECT_TRUE(table.add("b", 2));
    EXPECT_EQ(table.find("a"), 1U);
    EXPECT_EQ(table.find("b"), 2U);
    EXPECT_FALSE(table.contains("c"));
}

TEST(NameTable, KeepsTheFirstOfEqualNames) {
    NameTable table;
    EXPECT_TRUE(table.add("a", 1));
    EXPECT_FALSE(table.add(std::string("a"), 2));
    EXPECT_EQ(table.find("a"), 1U);
}

TEST(NameTable, TheEmptyNameIsAName) {
    NameTable table;
    EXPECT_FALSE(table.contains(""));
    EXPECT_TRUE(table.add({}, 7));
    EXPECT_EQ(table.find(""), 7U);
    EXPECT_FALSE(table.add("", 8));
}

TEST(NameTable, GrowsAndLosesNothing) {
    NameTable table;
    table.reserve(100);
    std::deque<std::string> names;
    for (std::uint32_t i = 0; i < 50'000; ++i) {
        ASSERT_TRUE(table.add(names.emplace_back("section." + std::to_string(i)), i));
    }
    for (std::uint32_t i = 0; i < 50'000; ++i) ASSERT_EQ(table.find(names[i]), i);
    EXPECT_FALSE(table.contains("section.50000"));
}

TEST(NameTable, IsEmptyWhenCleared) {
    NameTable table;
    table.add("a", 1);
    table.clear();
    EXPECT_FALSE(table.contains("a"));
    EXPECT_TRUE(table.add("a", 2));
    EXPECT_EQ(table.find("a"), 2U);
}

}  // namespace
}  // namespace quillon::pdf
