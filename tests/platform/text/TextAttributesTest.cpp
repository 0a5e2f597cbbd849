#include "platform/text/TextAttributes.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(TextAttributes, TheNamesAreTheirOwn) {
    EXPECT_EQ(NSFontAttributeName, QStringLiteral("NSFontAttributeName"));
    EXPECT_EQ(NSForegroundColorAttributeName, QStringLiteral("NSForegroundColorAttributeName"));
    EXPECT_EQ(NSStrikethroughColorAttributeName, QStringLiteral("NSStrikethroughColorAttributeName"));
}

TEST(TextAttributes, TheFirstAbsentValueEndsTheList) {
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    EXPECT_EQ(attributesWithObjectsAndKeys({{1, a}, {2, b}}), (TextAttributes{{a, 1}, {b, 2}}));
    EXPECT_EQ(attributesWithObjectsAndKeys({{1, a}, {QVariant(), b}}), (TextAttributes{{a, 1}}));
    EXPECT_TRUE(attributesWithObjectsAndKeys({{QVariant(), a}, {2, b}}).isEmpty());
    EXPECT_TRUE(attributesWithObjectsAndKeys({}).isEmpty());
}

}  // namespace
}  // namespace quillon
