#include "platform/pdf/DrawingContext.h"
#include "platform/pdf/PDFPage.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace quillon {
namespace {

TEST(DrawingContext, IsTheCurrentOneForTheTimeOfItsLife) {
    const PDFPage page;
    EXPECT_EQ(DrawingContext::current(), nullptr);
    {
        DrawingContext outer(page);
        EXPECT_EQ(DrawingContext::current(), &outer);
        {
            DrawingContext inner(page);
            EXPECT_EQ(DrawingContext::current(), &inner);
        }
        EXPECT_EQ(DrawingContext::current(), &outer);
    }
    EXPECT_EQ(DrawingContext::current(), nullptr);
}

TEST(DrawingContext, BelongsToItsThread) {
    const PDFPage page;
    DrawingContext context(page);
    DrawingContext* elsewhere = &context;
    std::thread([&elsewhere] { elsewhere = DrawingContext::current(); }).join();
    EXPECT_EQ(elsewhere, nullptr);
}

TEST(DrawingContext, OnlyItsOwnPageHasContentThere) {
    PDFPage page;
    PDFPage other;
    DrawingContext context(page);
    EXPECT_FALSE(context.contentDrawn());
    other.drawWithBox(PDFDisplayBox::MediaBox);
    EXPECT_FALSE(context.contentDrawn());
    page.drawWithBox(PDFDisplayBox::MediaBox);
    EXPECT_TRUE(context.contentDrawn());
}

TEST(DrawingContext, DrawingWithoutOneDoesNothing) {
    PDFPage page;
    page.drawWithBox(PDFDisplayBox::CropBox);
    EXPECT_EQ(DrawingContext::current(), nullptr);
}

}  // namespace
}  // namespace quillon
