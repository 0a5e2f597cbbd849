#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <utility>

namespace quillon::pdf {
namespace {

/// What of `text` is skipped; `none` when no value is found.
std::string skipped(std::string_view text) {
    const auto end = skipValue(text, 0);
    return end ? std::string(text.substr(0, *end)) : "none";
}

TEST(ValueSkipper, FindsTheEndOfEveryKindOfValue) {
    for (const std::string value :
         {"17", "-1.5", "/Name", "(a(b\\))c)", "<4142>", "true", "null", "[1[2]3]", "<</A<</B 1>>>>"}) {
        EXPECT_EQ(skipped(value + " x"), value);
    }
}

TEST(ValueSkipper, AReferenceIsOneValue) {
    EXPECT_EQ(skipped("5 0 R/X"), "5 0 R");
    EXPECT_EQ(skipped("5\n0\rR]"), "5\n0\rR");
    EXPECT_EQ(skipped("5 0 Rx"), "5");
    EXPECT_EQ(skipped("5 0 obj"), "5");
}

TEST(ValueSkipper, PassesOverWhiteSpaceAndCommentsBeforeTheValue) {
    EXPECT_EQ(skipped(" %[\n\t[1]2"), " %[\n\t[1]");
}

TEST(ValueSkipper, BracketsInStringsAndCommentsDoNotCount) {
    EXPECT_EQ(skipped("[(])<5D>%]\n]x"), "[(])<5D>%]\n]");
}

TEST(ValueSkipper, FindsTheEndOfALiteralStringOfAnyLength) {
    for (std::size_t length = 0; length < 100; ++length) {
        const std::string plain = '(' + std::string(length, 'x');
        for (const auto& [inside, rest] : {std::pair<std::string, std::string>{"", ")"},
                                           {"()", ")"},
                                           {"\\)", ")"},
                                           {"((", ")))"},
                                           {"", "\\))"},
                                           {"", "\\\\)"},
                                           {"", "\\\\\\))"},
                                           {"\\\\(", "))"},
                                           {"\\\\\\(", ")"}}) {
            const std::string whole = plain + inside + 'x' + rest;
            EXPECT_EQ(skipLiteralString(whole, 0), whole.size()) << whole;
            EXPECT_EQ(skipLiteralString(whole + std::string(40, ')'), 0), whole.size()) << whole;
            EXPECT_EQ(skipLiteralString("[(a)" + whole + "(b)]", 4), whole.size() + 4) << whole;
            EXPECT_EQ(skipLiteralString(plain + inside, 0), std::nullopt) << plain + inside;
        }
    }
}

TEST(ValueSkipper, GivesNothingForWhatIsNotClosed) {
    for (const std::string_view text : {"[1", "<</A 1", "(a", "<41", "", " ", "[1>>", "<</A 1]", "]", ">>", "(\\"}) {
        EXPECT_FALSE(skipValue(text, 0)) << text;
    }
}

TEST(ValueSkipper, GivesNothingForWhatIsNestedTooDeeply) {
    EXPECT_FALSE(skipValue(std::string(100'000, '['), 0));
    EXPECT_FALSE(skipValue(std::string(100'000, '<'), 0));
    EXPECT_FALSE(skipValue(std::string(100'000, '(') + std::string(10, ')'), 0));
}

TEST(ValueSkipper, AgreesWithTheParserOnWellFormedText) {
    std::mt19937 random(5);
    const std::string_view pieces[] = {"<</A ", ">>",   "[", "]",    "/B",   "1",   " 0 R ",
                                       "(x)",   "<41>", " ", "-1.5", "true", "%c\n"};
    int compared = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text = random() % 2 == 0 ? "[" : "<</K";
        for (auto n = random() % 12; n > 0; --n) text += pieces[random() % std::size(pieces)];
        Parser parser(text);
        (void)parser.parse();
        if (!parser.clean()) continue;
        ++compared;
        EXPECT_EQ(skipValue(text, 0), parser.position()) << text;
    }
    EXPECT_GT(compared, 100);
}

TEST(SkipBlank, StopsAtTheFirstCharacterOfAToken) {
    EXPECT_EQ(skipBlank(" \n% a\r /X", 0), 7U);
    EXPECT_EQ(skipBlank("  ", 0), 2U);
}

}  // namespace
}  // namespace quillon::pdf
