#include "platform/text/Font.h"

#include <QFontDatabase>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quillon {
namespace {

TEST(Font, IsFoundByFamilyAndSize) {
    const auto font = Font::fontWithName(QStringLiteral("DejaVu Sans"), 10.5);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->family(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(font->size(), 10.5);
}

TEST(Font, IsAbsentWhenTheFamilyIsNotInstalled) {
    for (const char* name : {"No Such Font", "", "Middle Buttom"}) {
        EXPECT_FALSE(Font::fontWithName(QString::fromLatin1(name), 12)) << name;
        EXPECT_FALSE(Font::objectWithName(QString::fromLatin1(name), 12).isValid()) << name;
    }
}

TEST(Font, MicrosoftSansSerifIsAlwaysThere) {
    const auto font = Font::fontWithName(QStringLiteral("Microsoft Sans Serif"), 20);
    ASSERT_TRUE(font);
    EXPECT_TRUE(QFontDatabase::hasFamily(font->family())) << font->family().toStdString();
    EXPECT_EQ(Font().family(), font->family()) << "it stands for the default font too";
    EXPECT_EQ(Font().size(), 12);
}

TEST(Font, ASizeThatIsNoneIsTheDefault) {
    for (const double size : {0.0, -3.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(Font::fontWithName(QStringLiteral("DejaVu Sans"), size)->size(), 12) << size;
    }
}

}  // namespace
}  // namespace quillon
