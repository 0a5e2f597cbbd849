#include "decoration/WaterMark.h"
#include "platform/image/Image.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

TEST(WaterMark, APlainOneIsABlankPage) {
    const WaterMark page;
    EXPECT_EQ(page.boundsForBox(PDFDisplayBox::MediaBox), QRectF(0, 0, 612, 792));
    EXPECT_EQ(page.rotation(), 0);
}

TEST(WaterMark, WithoutAnImageThereIsNoPage) {
    EXPECT_EQ(WaterMark::initWithImage(nullptr), nullptr);
}

TEST(WaterMark, APageOfAnImageHasItsSize) {
    const test::TempDir dir;
    const auto file = dir.write("dot.pbm", "P1\n2 3\n1 0\n0 1\n1 1\n");
    const auto image = Image::initWithContentsOfURL(QUrl::fromLocalFile(QString::fromStdString(file)));
    ASSERT_NE(image, nullptr);
    const auto page = WaterMark::initWithImage(image);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->boundsForBox(PDFDisplayBox::MediaBox), QRectF(QPointF(0, 0), image->size()));
}

}  // namespace
}  // namespace quillon
