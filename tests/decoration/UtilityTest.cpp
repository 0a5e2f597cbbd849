#include "decoration/Utility.h"
#include "tests/decoration/DecorationTest.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillon {
namespace {

constexpr auto smallest = std::numeric_limits<std::int32_t>::min();
constexpr auto largest = std::numeric_limits<std::int32_t>::max();

class UtilityTest : public test::DecorationTest {
protected:
    /// The next `count` page numbers, in quotes.
    static QString numbers(int count) {
        QString all;
        for (int i = 0; i < count; ++i) all += QLatin1Char('\'') + Utility::pageNumberString() + QLatin1Char('\'');
        return all;
    }
};

// Looks before any test has set something, when it runs in a program of its own.
TEST(UtilityStart, IsOffAndEmptyWhenTheProgramStarts) {
    EXPECT_FALSE(Utility::shouldAddWaterMark());
    EXPECT_TRUE(Utility::waterMarkContent().isNull());
    EXPECT_FALSE(Utility::shouldAddPageNumber());
    EXPECT_TRUE(Utility::pageNumberStringAttri().isEmpty());
    EXPECT_EQ(Utility::getPageNumberPosition(), 0U);
    EXPECT_EQ(Utility::pageNumberString(), QStringLiteral(" 0"));
    EXPECT_EQ(Utility::pageNumberString(), QStringLiteral(" 0"));
}

TEST_F(UtilityTest, TheWatermarkIsSwitchedOnAndOff) {
    Utility::setShouldAddWaterMark();
    EXPECT_TRUE(Utility::shouldAddWaterMark());
    Utility::resetShouldAddwaterMark();
    EXPECT_FALSE(Utility::shouldAddWaterMark());
}

TEST_F(UtilityTest, SwitchingTheWatermarkOffKeepsItsText) {
    Utility::setShouldAddWaterMark();
    Utility::setWatermarkContent(QStringLiteral("Draft"));
    Utility::resetShouldAddwaterMark();
    EXPECT_EQ(Utility::waterMarkContent(), QStringLiteral("Draft"));
}

TEST_F(UtilityTest, PageNumbersAreSwitchedOnAndOff) {
    Utility::setShouldaddPageNumber(true);
    EXPECT_TRUE(Utility::shouldAddPageNumber());
    Utility::setShouldaddPageNumber(false);
    EXPECT_FALSE(Utility::shouldAddPageNumber());
}

TEST_F(UtilityTest, KeepsAttributesAndPosition) {
    Utility::setPageNumberStringAttri({{QStringLiteral("size"), 12}});
    EXPECT_EQ(Utility::pageNumberStringAttri().value(QStringLiteral("size")).toInt(), 12);
    Utility::setPageNUmberPosition(2);
    EXPECT_EQ(Utility::getPageNumberPosition(), 2U);
    Utility::setPageNUmberPosition(4294967295U);
    EXPECT_EQ(Utility::getPageNumberPosition(), 4294967295U);
}

TEST_F(UtilityTest, CountsFromOneInStepsOfOne) {
    Utility::setPageNumberPrefixString(QStringLiteral("Page"));
    Utility::setPageNumberBegin(1, 1);
    EXPECT_EQ(numbers(3), QStringLiteral("'Page 1''Page 2''Page 3'"));
}

TEST_F(UtilityTest, CountsFromTenInStepsOfFive) {
    Utility::setPageNumberBegin(10, 5);
    EXPECT_EQ(numbers(3), QStringLiteral("' 10'' 15'' 20'"));
}

TEST_F(UtilityTest, WithoutAPrefixANumberBeginsWithASpace) {
    Utility::setPageNumberPrefixString(QStringLiteral(""));
    Utility::setPageNumberBegin(1, 1);
    EXPECT_EQ(numbers(2), QStringLiteral("' 1'' 2'"));
}

TEST_F(UtilityTest, StepZeroNumbersEveryPageAlike) {
    EXPECT_EQ(numbers(3), QStringLiteral("' 0'' 0'' 0'"));
}

TEST_F(UtilityTest, ANegativeStepCountsDown) {
    Utility::setPageNumberPrefixString(QStringLiteral("Page"));
    Utility::setPageNumberBegin(0, -1);
    EXPECT_EQ(numbers(3), QStringLiteral("'Page 0''Page -1''Page -2'"));
}

TEST_F(UtilityTest, SettingTheBeginningStartsTheCountAnew) {
    Utility::setPageNumberBegin(1, 1);
    EXPECT_EQ(numbers(2), QStringLiteral("' 1'' 2'"));
    Utility::setPageNumberBegin(1, 1);
    EXPECT_EQ(numbers(2), QStringLiteral("' 1'' 2'"));
}

TEST_F(UtilityTest, APrefixThatIsSetOnTheWayDoesNotStartTheCountAnew) {
    Utility::setPageNumberBegin(1, 1);
    EXPECT_EQ(numbers(1), QStringLiteral("' 1'"));
    Utility::setPageNumberPrefixString(QStringLiteral("p."));
    EXPECT_EQ(numbers(1), QStringLiteral("'p. 2'"));
}

TEST_F(UtilityTest, PastTheLargestNumberComesTheSmallest) {
    Utility::setPageNumberBegin(largest, 1);
    EXPECT_EQ(numbers(3), QStringLiteral("' 2147483647'' -2147483648'' -2147483647'"));
}

TEST_F(UtilityTest, PastTheSmallestNumberComesTheLargest) {
    Utility::setPageNumberBegin(smallest, -1);
    EXPECT_EQ(numbers(2), QStringLiteral("' -2147483648'' 2147483647'"));
}

TEST_F(UtilityTest, TheProductOfStepAndCountWrapsToo) {
    Utility::setPageNumberBegin(0, smallest);
    EXPECT_EQ(numbers(3), QStringLiteral("' 0'' -2147483648'' 0'"));
    Utility::setPageNumberBegin(0, largest);
    EXPECT_EQ(numbers(4), QStringLiteral("' 0'' 2147483647'' -2'' 2147483645'"));
}

}  // namespace
}  // namespace quillon
