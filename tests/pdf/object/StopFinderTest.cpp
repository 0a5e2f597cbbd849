#include "pdf/object/StopFinder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace quillon::pdf {
namespace {

template <char... stops>
std::vector<std::size_t> found(std::string_view text) {
    StopFinder<stops...> finder(text);
    std::vector<std::size_t> places;
    for (std::size_t at = finder.find(0); at < text.size(); at = finder.find(at + 1)) places.push_back(at);
    return places;
}

TEST(StopFinder, FindsEachStopInOrder) {
    EXPECT_EQ((found<'(', ')'>("a(b)c(")), (std::vector<std::size_t>{1, 3, 5}));
    EXPECT_EQ((found<'('>("")), std::vector<std::size_t>());
    EXPECT_EQ((found<'('>("none")), std::vector<std::size_t>());
}

TEST(StopFinder, GivesTheSizeOfTheTextWhereThereIsNone) {
    StopFinder<'x'> finder("abc");
    EXPECT_EQ(finder.find(0), 3U);
    EXPECT_EQ(finder.find(3), 3U);
    EXPECT_EQ(finder.find(100), 3U);
}

TEST(StopFinder, PassesOverWhatIsSkipped) {
    const std::string text = "x" + std::string(200, 'x') + "y";
    StopFinder<'x', 'y'> finder(text);
    EXPECT_EQ(finder.find(0), 0U);
    EXPECT_EQ(finder.find(63), 63U);
    EXPECT_EQ(finder.find(64), 64U);
    EXPECT_EQ(finder.find(150), 150U);
    EXPECT_EQ(finder.find(201), 201U);
}

TEST(StopFinder, FindsInTextsOfAnyLengthWhatIsThere) {
    std::mt19937 random(7);
    for (std::size_t length = 0; length < 300; ++length) {
        std::string text;
        std::vector<std::size_t> expected;
        for (std::size_t i = 0; i < length; ++i) {
            text += "ab\xff\x80<"[random() % 5];
            if (text.back() == '<' || text.back() == '\x80') expected.push_back(i);
        }
        // Nothing behind the end may count.
        text += "<<<<";
        ASSERT_EQ((found<'<', '\x80'>(std::string_view(text).substr(0, length))), expected) << length;
    }
}

TEST(StopFinder, FindsWhatIsNoStop) {
    StopFinder<'a', 'b'> finder("abcab");
    EXPECT_EQ(finder.findOther(0), 2U);
    EXPECT_EQ(finder.findOther(2), 2U);
    EXPECT_EQ(finder.findOther(3), 5U);
    EXPECT_EQ(finder.findOther(100), 5U);
    EXPECT_EQ((StopFinder<'a'>("").findOther(0)), 0U);
}

TEST(StopFinder, FindsWhatIsNoStopInTextsOfAnyLength) {
    for (std::size_t length = 0; length < 300; ++length) {
        // What stands behind the end is no stop, and must not count.
        const std::string stops = std::string(length, 'a') + "bbbb";
        const std::string_view text = std::string_view(stops).substr(0, length);
        ASSERT_EQ((StopFinder<'a'>(text).findOther(0)), length);
        for (std::size_t place = 0; place < length; ++place) {
            std::string other(text);
            other[place] = '\0';
            StopFinder<'a'> finder(other);
            ASSERT_EQ(finder.findOther(0), place) << length;
            ASSERT_EQ(finder.findOther(place + 1), length) << place;
        }
    }
}

}  // namespace
}  // namespace quillon::pdf
