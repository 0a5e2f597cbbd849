#include "platform/text/LineLayout.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace quillon {
namespace {

const QString sans = QStringLiteral("DejaVu Sans");

QStringList clustersOf(const QString& text) {
    QStringList texts;
    for (const auto& cluster : LineLayout::of(text, sans).clusters) texts.append(cluster.text);
    return texts;
}

TEST(LineLayout, PlainTextIsAGlyphACharacter) {
    const LineLayout line = LineLayout::of(QStringLiteral(" aW"), sans);
    ASSERT_EQ(line.clusters.size(), 3U);
    EXPECT_EQ(line.clusters[0].glyphs.front().x, 0) << "a blank in front takes its room";
    EXPECT_GT(line.clusters[1].glyphs.front().x, 0.2);
    EXPECT_GT(line.width, line.clusters[2].glyphs.front().x + 0.9);
    EXPECT_GT(line.descent, 0.1);
    EXPECT_GT(line.ascent, 0.7);
}

TEST(LineLayout, NothingTakesNoRoom) {
    EXPECT_EQ(LineLayout::of(QString(), sans).width, 0);
    EXPECT_TRUE(LineLayout::of(QString(), sans).clusters.empty());
}

TEST(LineLayout, ControlCharactersAreBlanks) {
    const QString text = QStringLiteral("a\tb\nc\rd") + QChar(0) + QStringLiteral("e") + QChar(0x2028) + QChar(0x85);
    EXPECT_EQ(clustersOf(text).join(QString()), QStringLiteral("a b c d e  "));
}

TEST(LineLayout, HalvesOfPairsAreReplaced) {
    const QString text = QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b") + QChar(0xDE00);
    EXPECT_EQ(clustersOf(text).join(QString()), QStringLiteral("a\ufffdb\ufffd"));
}

TEST(LineLayout, ALigatureIsOneClusterOfItsCharacters) {
    const QStringList clusters = clustersOf(QString::fromUtf8("office"));
    EXPECT_EQ(clusters.join(QString()), QStringLiteral("office"));
    EXPECT_LT(clusters.size(), 6) << "this font has one";
}

TEST(LineLayout, WritingFromTheRightIsPlacedFromTheRight) {
    const QStringList clusters = clustersOf(QString::fromUtf8("אבג"));
    EXPECT_EQ(clusters, (QStringList{QString::fromUtf8("ג"), QString::fromUtf8("ב"), QString::fromUtf8("א")}));
}

TEST(LineLayout, TenThousandCharactersAreOneLine) {
    const LineLayout one = LineLayout::of(QStringLiteral("W"), sans);
    const LineLayout line = LineLayout::of(QString(10'000, QLatin1Char('W')), sans);
    EXPECT_NEAR(line.width, 10'000 * one.width, 1);
    EXPECT_EQ(line.clusters.size(), 10'000U);
}

}  // namespace
}  // namespace quillon
