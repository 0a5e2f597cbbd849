#include "pdf/join/JoinedNames.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::pdf {
namespace {

TEST(JoinedNames, ANameThatIsTakenGetsTheOrdinal) {
    JoinedNames names;
    EXPECT_EQ(names.nameAt(names.reserve("a", 1)), "a");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2-2");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2-3");
    EXPECT_EQ(names.nameAt(names.reserve("a-2", 3)), "a-2-3-2");
    EXPECT_TRUE(names.contains("a-2-2"));
    EXPECT_FALSE(names.contains("b"));
}

TEST(JoinedNames, NamesOutliveTheTextsThatTheyWereGivenAs) {
    JoinedNames names;
    const auto first = names.reserve(std::string("a name that ends at once, and is long"), 1);
    for (int i = 0; i < 10'000; ++i) static_cast<void>(names.reserve("another " + std::to_string(i), 1));
    EXPECT_EQ(names.nameAt(first), "a name that ends at once, and is long");
}

TEST(JoinedNames, IsEmptyUntilANameHasAValue) {
    JoinedNames names;
    const auto place = names.reserve("a", 1);
    EXPECT_TRUE(names.empty());
    names.set(place, "1 0 R");
    EXPECT_FALSE(names.empty());
}

}  // namespace
}  // namespace quillon::pdf
