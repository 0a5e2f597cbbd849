#include "merge/LeadingInteger.h"

#include <QString>
#include <gtest/gtest.h>

namespace quillon {
namespace {

std::int32_t parsed(const char16_t* text) {
    return leadingInteger(QStringView(text));
}

TEST(LeadingInteger, ReadsDigits) {
    EXPECT_EQ(parsed(u"2"), 2);
    EXPECT_EQ(parsed(u"007"), 7);
}

TEST(LeadingInteger, IgnoresWhatFollows) {
    EXPECT_EQ(parsed(u"2abc"), 2);
    EXPECT_EQ(parsed(u"3 pages"), 3);
    EXPECT_EQ(parsed(u"5-9"), 5);
    EXPECT_EQ(parsed(u"1.9"), 1);
}

TEST(LeadingInteger, SkipsWhiteSpaceInFront) {
    EXPECT_EQ(parsed(u" 4"), 4);
    EXPECT_EQ(parsed(u"\t\n 4"), 4);
}

TEST(LeadingInteger, TakesOneSign) {
    EXPECT_EQ(parsed(u"-4"), -4);
    EXPECT_EQ(parsed(u"+4"), 4);
    EXPECT_EQ(parsed(u" -4"), -4);
    EXPECT_EQ(parsed(u"--4"), 0);
    EXPECT_EQ(parsed(u"- 4"), 0);
}

TEST(LeadingInteger, IsZeroForWhatDoesNotBeginWithANumber) {
    EXPECT_EQ(parsed(u""), 0);
    EXPECT_EQ(parsed(u"   "), 0);
    EXPECT_EQ(parsed(u"abc2"), 0);
    EXPECT_EQ(parsed(u"-"), 0);
    EXPECT_EQ(leadingInteger(QString()), 0);
}

TEST(LeadingInteger, KnowsOnlyTheDigitsOfAscii) {
    EXPECT_EQ(parsed(u"\u0664"), 0);  // an Arabic-Indic four
    EXPECT_EQ(parsed(u"1\u0664"), 1);
}

TEST(LeadingInteger, StaysInsideThe32BitRange) {
    EXPECT_EQ(parsed(u"2147483647"), 2147483647);
    EXPECT_EQ(parsed(u"2147483648"), 2147483647);
    EXPECT_EQ(parsed(u"99999999999999999999999999"), 2147483647);
    EXPECT_EQ(parsed(u"-2147483648"), -2147483647 - 1);
    EXPECT_EQ(parsed(u"-99999999999999999999999999"), -2147483647 - 1);
}

}  // namespace
}  // namespace quillon
