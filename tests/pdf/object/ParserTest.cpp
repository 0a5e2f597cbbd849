#include "pdf/object/Parser.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace quillon::pdf {
namespace {

std::string rewritten(std::string_view text) {
    std::string out;
    Parser(text).parse().write(out);
    return out;
}

std::string repeated(std::string_view text, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += text;
    return out;
}

TEST(Parser, TellsReferencesFromNumbers) {
    EXPECT_EQ(rewritten("[1 2 3 0 R 4 R 5 0 RG]"), "[1 2 3 0 R 4 null 5 0 null]");
    EXPECT_EQ(*Parser("12 3 R").parse().reference(), (Reference{12, 3}));
}

TEST(Parser, OfEqualKeysTheLastHolds) {
    const Object object = Parser("<</A 1/B 2/A 3>>").parse();
    EXPECT_EQ((*object.dictionary())["A"].integer(), 3);
}

TEST(Parser, AMissingKeyReadsAsNull) {
    const Object object = Parser("<</A null>>").parse();
    EXPECT_TRUE((*object.dictionary())["A"].isNull());
    EXPECT_TRUE((*object.dictionary())["B"].isNull());
}

TEST(Parser, ClosesWhatTheTextDoesNotClose) {
    EXPECT_EQ(rewritten("<</A[1 2"), "<</A[1 2]>>");
    EXPECT_EQ(rewritten("[1[2"), "[1[2]]");
}

TEST(Parser, StopsWhereTheObjectEnds) {
    Parser parser("<</A 1 endobj 7 0 obj 5");
    EXPECT_EQ((*parser.parse().dictionary())["A"].integer(), 1);
    EXPECT_FALSE(parser.clean());
    EXPECT_EQ(parser.position(), 7U);
}

TEST(Parser, SkipsWhatIsNoKeyInADictionary) {
    EXPECT_EQ(rewritten("<<1 2/A 3 4/B 5>>"), "<</A 3/B 5>>");
    EXPECT_EQ(rewritten("<</A 1/B>>"), "<</A 1>>");
}

TEST(Parser, SaysWhetherTheTextWasWellFormed) {
    Parser good("<</A[null true(x)]>>");
    (void)good.parse();
    EXPECT_TRUE(good.clean());
    Parser bad("[foo]");
    (void)bad.parse();
    EXPECT_FALSE(bad.clean());
}

TEST(Parser, NestsAsDeeplyAsAnySoundFile) {
    const std::string text = repeated("[", 150) + "1" + repeated("]", 150);
    EXPECT_EQ(rewritten(text), text);
}

TEST(Parser, ReadsAHundredThousandBracketsWithoutExhaustingTheStack) {
    for (const std::string_view bracket : {"[", "<<", "<</A", "[<</A"}) {
        const Object object = Parser(repeated(bracket, 100'000)).parse();
        EXPECT_TRUE(object.array() || object.dictionary()) << bracket;
    }
    const std::string closed = repeated("[", 100'000) + repeated("]", 100'000) + " 7";
    Parser parser(closed);
    EXPECT_NE(parser.parse().array(), nullptr);
    EXPECT_EQ(parser.parse().integer(), 7);
}

TEST(Parser, WhatIsNestedTooDeeplyReadsAsNullAndWhatFollowsIsKept) {
    const std::string text = repeated("[", 201) + "1" + repeated("]", 201);
    EXPECT_EQ(rewritten("[" + text + " 5]"), "[" + repeated("[", 199) + "null" + repeated("]", 199) + "5]");
}

TEST(Parser, ReadsAnyBytes) {
    std::mt19937 random(11);
    const std::string_view pieces[] = {"<<",   ">>", "[", "]",  "/A",   "/Length", "1",      "0",      "R",
                                       "(",    ")",  "<", ">",  "-1.5", "obj",     "endobj", "stream", "null",
                                       "true", "\\", "%", "\n", " ",    "{",       "\xff",   "#"};
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (auto n = random() % 40; n > 0; --n) text += pieces[random() % std::size(pieces)];
        std::string once;
        Parser(text).parse().write(once);
        EXPECT_EQ(rewritten(once), once) << text;
    }
}

TEST(PlainReferences, AreAnArrayOfReferencesAndNothingElse) {
    using References = std::vector<Reference>;
    EXPECT_EQ(plainReferences("[1 0 R 22 3 R]"), (References{{1, 0}, {22, 3}}));
    EXPECT_EQ(plainReferences("[ 1 0 R\n2 0 R] /Next"), (References{{1, 0}, {2, 0}}));
    EXPECT_EQ(plainReferences("[]"), References());
    for (const char* other : {"", "[", "[1 0 R", "[1 0 R 5]", "[1 0 R null]", "[1 0 R<<>>]", "[[1 0 R]]", "1 0 R",
                              "<</A 1 0 R>>", "[1 0 R % 2 0 R\n]", "[4294967296 0 R]", " [1 0 R]"}) {
        EXPECT_FALSE(plainReferences(other)) << other;
    }
}

TEST(PlainReference, IsAWholeReferenceAndNothingElse) {
    EXPECT_EQ(plainReference("12 0 R"), (Reference{12, 0}));
    EXPECT_EQ(plainReference("12\n 65535\tR"), (Reference{12, 65535}));
    for (const char* text : {"", "12", "12 0", "12 0 R ", " 12 0 R", "12 0 RG", "12 0R", "120 R", "/A 0 R", "-1 0 R",
                             "[12 0 R]", "99999999999 0 R", "1 99999999999999999999 R"}) {
        EXPECT_FALSE(plainReference(text)) << text;
    }
}

}  // namespace
}  // namespace quillon::pdf
