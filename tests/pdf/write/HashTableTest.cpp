#include "pdf/write/HashTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <unordered_map>

namespace quillon::pdf {
namespace {

TEST(HashTable, TheFirstValueOfAHashStays) {
    HashTable<int> table;
    EXPECT_TRUE(table.tryEmplace(7, 1).isNew);
    const auto again = table.tryEmplace(7, 2);
    EXPECT_FALSE(again.isNew);
    EXPECT_EQ(again.value, 1);
    again.value = 3;
    EXPECT_EQ(table.tryEmplace(7, 4).value, 3);
}

TEST(HashTable, ZeroIsAHashLikeAnyOther) {
    HashTable<int> table;
    EXPECT_TRUE(table.tryEmplace(0, 1).isNew);
    EXPECT_FALSE(table.tryEmplace(0, 2).isNew);
}

TEST(HashTable, KeepsManyApart) {
    std::mt19937_64 random(3);
    HashTable<int> table;
    std::unordered_map<std::uint64_t, int> expected;
    for (int i = 0; i < 20'000; ++i) {
        // Many share their lower bits, where the search begins.
        const std::uint64_t hash = i % 3 == 0 ? random() << 48U : random() % 15'000 + 1;
        const auto [place, isNew] = expected.try_emplace(hash, i);
        const auto added = table.tryEmplace(hash, i);
        ASSERT_EQ(added.isNew, isNew);
        ASSERT_EQ(added.value, place->second);
    }
    for (const auto& [hash, value] : expected) ASSERT_EQ(table.tryEmplace(hash, -1).value, value);
}

TEST(HashTable, IsEmptyOnceCleared) {
    HashTable<int> table;
    for (int i = 0; i < 1000; ++i) static_cast<void>(table.tryEmplace(static_cast<std::uint64_t>(i), i));
    table.clear();
    EXPECT_TRUE(table.tryEmplace(5, 9).isNew);
}

}  // namespace
}  // namespace quillon::pdf
