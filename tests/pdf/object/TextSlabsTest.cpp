#include "pdf/object/TextSlabs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace quillon::pdf {
namespace {

TEST(TextSlabs, KeepsTextsOfAnyLength) {
    TextSlabs slabs;
    for (const std::size_t length : {0U, 1U, 40'000U, 0U, 2'000'000U, 3U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(slabs.keep(text).text, text);
    }
}

TEST(TextSlabs, EachTextStaysForAsLongAsItIsHeld) {
    std::mt19937 random(11);
    std::vector<std::pair<OwnedText, std::string>> kept;
    {
        TextSlabs slabs;
        for (int i = 0; i < 500; ++i) {
            const std::string text(random() % 20'000, static_cast<char>('a' + i % 26));
            kept.emplace_back(slabs.keep(text), text);
        }
    }
    std::ranges::shuffle(kept, random);
    for (; !kept.empty(); kept.pop_back()) ASSERT_EQ(kept.back().first.text, kept.back().second);
}

TEST(TextSlabs, MemoryEndsWithTheLastTextInIt) {
    TextSlabs slabs;
    OwnedText first = slabs.keep("a");
    OwnedText second = slabs.keep("b");
    const std::weak_ptr<const void> slab = first.owner;
    EXPECT_EQ(first.owner, second.owner);
    slabs = {};
    first = {};
    EXPECT_FALSE(slab.expired());
    second = {};
    EXPECT_TRUE(slab.expired());
}

}  // namespace
}  // namespace quillon::pdf
