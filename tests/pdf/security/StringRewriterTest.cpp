#include "pdf/security/StringRewriter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillon::pdf {
namespace {

std::string reversed(std::string_view value) {
    std::string out;
    rewriteStrings(
        value, [](std::string_view text) { return std::string(text.rbegin(), text.rend()); }, out);
    return out;
}

TEST(StringRewriterTest, OnlyStringsChange) {
    EXPECT_EQ(reversed("<</A(abc)/B[1 2 R(de)<4A4B>]/C/name>>"), "<</A(cba)/B[1 2 R(ed)(KJ)]/C/name>>");
    EXPECT_EQ(reversed("(ab)"), "(ba)");
    EXPECT_EQ(reversed("12"), "12");
    EXPECT_EQ(reversed("[]"), "[]");
}

TEST(StringRewriterTest, WhatLooksLikeAStringInACommentIsNone) {
    EXPECT_EQ(reversed("[1 % (ab)\n(cd)]"), "[1 % (ab)\n(dc)]");
}

TEST(StringRewriterTest, EscapesAndBracketsBelongToTheString) {
    EXPECT_EQ(reversed("(a\\)(b)\\101)"), "(A\\)b\\(\\)a)");
}

TEST(StringRewriterTest, TheValueOfASignatureStays) {
    EXPECT_EQ(reversed("<</Contents<4142>/ByteRange[0 1]/Reason(xy)>>"), "<</Contents(AB)/ByteRange[0 1]/Reason(yx)>>");
    EXPECT_EQ(reversed("<</Contents(AB)>>"), "<</Contents(BA)>>");
}

TEST(StringRewriterTest, MalformedValuesComeOutWellFormed) {
    EXPECT_EQ(reversed("<</A(ab)/B[(cd)"), "<</A(ba)/B[(dc)]>>");
    EXPECT_EQ(reversed("(ab"), "(ba)");
    EXPECT_EQ(reversed(""), "null");
}

TEST(StringRewriterTest, TheQuickLookMissesNoString) {
    EXPECT_FALSE(mayHoldString("<</A/B/C[1 2 R]>>"));
    EXPECT_FALSE(mayHoldString(""));
    EXPECT_FALSE(mayHoldString("<<<<>>>>"));
    EXPECT_TRUE(mayHoldString("<</A<41>>>"));
    EXPECT_TRUE(mayHoldString("<</A()>>"));
    EXPECT_TRUE(mayHoldString("<"));
}

}  // namespace
}  // namespace quillon::pdf
