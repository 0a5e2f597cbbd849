#include "merge/RangeResolver.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillon {
namespace {

using Indices = std::vector<int>;

/// The indices that a text names, taken as the merge takes them.
Indices taken(const QString& text, int pageCount = 10) {
    Indices result;
    RangeResolver resolver(text, pageCount);
    while (resolver.next()) {
        if (resolver.isRange()) {
            for (int q = resolver.getStart(); q <= resolver.getEnd(); ++q) result.push_back(q);
        } else {
            result.push_back(resolver.getValue());
        }
    }
    return result;
}

TEST(RangeResolver, ARangeAndAPage) {
    EXPECT_EQ(taken(QStringLiteral("1-3,5")), (Indices{0, 1, 2, 4}));
}

TEST(RangeResolver, TheEndIsLoweredToTheLastPage) {
    EXPECT_EQ(taken(QStringLiteral("8-20")), (Indices{7, 8, 9}));
}

TEST(RangeResolver, AnEmptyStartIsTheFirstPage) {
    EXPECT_EQ(taken(QStringLiteral("-4")), (Indices{0, 1, 2, 3}));
}

TEST(RangeResolver, AnEmptyEndIsTheFirstPageToo) {
    EXPECT_EQ(taken(QStringLiteral("4-")), Indices{});
    EXPECT_EQ(taken(QStringLiteral("1-")), Indices{0});
}

TEST(RangeResolver, AReversedRangeIsEmpty) {
    EXPECT_EQ(taken(QStringLiteral("5-3")), Indices{});
}

TEST(RangeResolver, APageIsLoweredToTheLastPage) {
    EXPECT_EQ(taken(QStringLiteral("12")), Indices{9});
}

TEST(RangeResolver, EmptyPartsAreSkipped) {
    EXPECT_EQ(taken(QStringLiteral("3,,7")), (Indices{2, 6}));
    EXPECT_EQ(taken(QStringLiteral("1,,3")), (Indices{0, 2}));
    EXPECT_EQ(taken(QStringLiteral(",1")), Indices{0});
    EXPECT_EQ(taken(QStringLiteral("1,")), Indices{0});
}

TEST(RangeResolver, OnlyCommasNameNothing) {
    EXPECT_EQ(taken(QStringLiteral(",,,")), Indices{});
}

TEST(RangeResolver, PageZeroIsNotRaised) {
    EXPECT_EQ(taken(QStringLiteral("0")), Indices{-1});
}

TEST(RangeResolver, APartThatIsNoNumberIsNotRaisedEither) {
    EXPECT_EQ(taken(QStringLiteral("abc")), Indices{-1});
    EXPECT_EQ(taken(QStringLiteral(" ")), Indices{-1});
}

TEST(RangeResolver, TheEmptyTextNamesNothing) {
    EXPECT_EQ(taken(QStringLiteral("")), Indices{});
    EXPECT_EQ(RangeResolver(QStringLiteral(""), 10).getNumberOfParts(), 1);
}

TEST(RangeResolver, AnAbsentTextHasNoParts) {
    EXPECT_EQ(taken(QString()), Indices{});
    EXPECT_EQ(RangeResolver(QString(), 10).getNumberOfParts(), 0);
}

TEST(RangeResolver, OnlyTheFirstDashDivides) {
    EXPECT_EQ(taken(QStringLiteral("2-5-9")), (Indices{1, 2, 3, 4}));
    EXPECT_EQ(taken(QStringLiteral("2--5")), Indices{});  // the end is -5
    EXPECT_EQ(taken(QStringLiteral("-")), Indices{0});
}

TEST(RangeResolver, PartsAreTakenInTheOrderWritten) {
    EXPECT_EQ(taken(QStringLiteral("9,1-2,5")), (Indices{8, 0, 1, 4}));
}

TEST(RangeResolver, APageMayBeTakenMoreThanOnce) {
    EXPECT_EQ(taken(QStringLiteral("1,1")), (Indices{0, 0}));
}

TEST(RangeResolver, TheNumberOfPartsCountsEmptyOnes) {
    EXPECT_EQ(RangeResolver(QStringLiteral("1,,3"), 10).getNumberOfParts(), 3);
}

TEST(RangeResolver, AfterTheLastPartThereIsNeverANextOne) {
    RangeResolver resolver(QStringLiteral("1"), 10);
    EXPECT_TRUE(resolver.next());
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(resolver.next());
}

TEST(RangeResolver, BeforeTheFirstPartThereIsNoRange) {
    RangeResolver resolver(QStringLiteral("1-2"), 10);
    EXPECT_FALSE(resolver.isRange());
    EXPECT_EQ(resolver.getValue(), -1);
}

TEST(RangeResolver, OfADocumentWithoutPagesARangeNamesThePageInFrontOnce) {
    EXPECT_EQ(taken(QStringLiteral("1-3"), 0), Indices{-1});
    EXPECT_EQ(taken(QStringLiteral("5-9"), 0), Indices{-1});
}

TEST(RangeResolver, OfADocumentWithoutPagesARangeWithAnEmptyStartNamesNothing) {
    EXPECT_EQ(taken(QStringLiteral("-3"), 0), Indices{});
}

TEST(RangeResolver, OfADocumentWithoutPagesAPageIsThePageInFront) {
    EXPECT_EQ(taken(QStringLiteral("7"), 0), Indices{-1});
}

TEST(RangeResolver, WhiteSpaceInFrontOfANumberIsAccepted) {
    EXPECT_EQ(taken(QStringLiteral(" 4")), Indices{3});
    EXPECT_EQ(taken(QStringLiteral("1, 4")), (Indices{0, 3}));
}

TEST(RangeResolver, WhiteSpaceAroundTheDashIsAccepted) {
    EXPECT_EQ(taken(QStringLiteral("4 - 6")), (Indices{3, 4, 5}));
}

TEST(RangeResolver, TrailingCharactersAreIgnored) {
    EXPECT_EQ(taken(QStringLiteral("2nd,4 to 6")), (Indices{1, 3}));
}

TEST(RangeResolver, NumbersTooLargeMeanTheLastPage) {
    EXPECT_EQ(taken(QStringLiteral("99999999999999")), Indices{9});
    EXPECT_EQ(taken(QStringLiteral("9-99999999999999")), (Indices{8, 9}));
}

TEST(RangeResolver, NumbersTooSmallMeanTheFirstPage) {
    EXPECT_EQ(taken(QStringLiteral("1--99999999999999")), Indices{0});
}

TEST(RangeResolver, PartsAndDividersCanBeReplaced) {
    RangeResolver resolver(QStringLiteral("1-3"), 10);
    EXPECT_EQ(resolver.cache(), QStringList{QStringLiteral("1-3")});
    EXPECT_EQ(resolver.divider(), QSet<QChar>{QChar(u'-')});
    resolver.setCache({QStringLiteral("2:4")});
    resolver.setDivider({QChar(u':')});
    ASSERT_TRUE(resolver.next());
    ASSERT_TRUE(resolver.isRange());
    EXPECT_EQ(resolver.getStart(), 1);
    EXPECT_EQ(resolver.getEnd(), 3);
}

}  // namespace
}  // namespace quillon
