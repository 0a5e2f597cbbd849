#include "platform/image/ExifTags.h"
#include "tests/platform/image/PictureFixtures.h"

#include <gtest/gtest.h>

namespace quillon::testing {

namespace {

ExifTags parse(const QByteArray& bytes) {
    return ExifTags::parse(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace

TEST(ExifTagsTest, ReadsBothByteOrders) {
    for (const bool isLittleEndian : {false, true}) {
        const ExifTags tags = parse(Exif{6, std::pair(3000U, 10U), std::pair(150U, 1U), 2, isLittleEndian}.bytes());
        EXPECT_EQ(tags.orientation.number(), 6U);
        ASSERT_TRUE(tags.resolution);
        EXPECT_EQ(tags.resolution->horizontal, 300);
        EXPECT_EQ(tags.resolution->vertical, 150);
    }
}

TEST(ExifTagsTest, UnitIsInchWhereItIsMissing) {
    const ExifTags tags =
        parse(Exif{std::nullopt, std::pair(100U, 1U), std::pair(100U, 1U), std::nullopt, false}.bytes());
    ASSERT_TRUE(tags.resolution);
    EXPECT_EQ(tags.resolution->horizontal, 100);
}

TEST(ExifTagsTest, UnitsOtherThanInchAndCentimetreGiveNoResolution) {
    EXPECT_FALSE(parse(Exif{std::nullopt, std::pair(100U, 1U), std::pair(100U, 1U), 1, false}.bytes()).resolution);
    const auto metric =
        parse(Exif{std::nullopt, std::pair(100U, 1U), std::pair(100U, 1U), 3, false}.bytes()).resolution;
    ASSERT_TRUE(metric);
    EXPECT_DOUBLE_EQ(metric->horizontal, 254);
}

TEST(ExifTagsTest, AxisThatIsMissingTakesOverTheOther) {
    const auto resolution = parse(Exif{std::nullopt, std::nullopt, std::pair(100U, 1U), 2, false}.bytes()).resolution;
    ASSERT_TRUE(resolution);
    EXPECT_EQ(resolution->horizontal, 100);
}

TEST(ExifTagsTest, OrientationsOutsideOneToEightAreUpright) {
    for (const unsigned number : {0U, 9U, 65535U})
        EXPECT_EQ(parse(Exif{number, std::nullopt, std::nullopt, std::nullopt, true}.bytes()).orientation.number(), 1U);
}

TEST(ExifTagsTest, AnyBytesAreTaken) {
    const QByteArray whole = Exif{6, std::pair(300U, 1U), std::pair(300U, 1U), 2, false}.bytes();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const unsigned number = parse(whole.left(length)).orientation.number();
        EXPECT_TRUE(number == 1 || number == 6);
    }
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray changed = whole;
        changed[at] = '\xFF';
        const ExifTags tags = parse(changed);
        EXPECT_LE(tags.orientation.number(), 8U);
        EXPECT_GE(tags.resolution.value_or(Resolution{}).horizontal, 5);
    }
}

}  // namespace quillon::testing
