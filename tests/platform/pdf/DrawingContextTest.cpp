#include "platform/pdf/DrawingContext.h"
#include "platform/pdf/PDFPage.h"

#include <gtest/gtest.h>

#include <any>
#include <optional>
#include <thread>

namespace quillon {
namespace {

TEST(DrawingContext, IsTheCurrentOneForTheTimeOfItsLife) {
    const PDFPage page;
    std::any store;
    EXPECT_EQ(DrawingContext::current(), nullptr);
    {
        DrawingContext outer(page, store);
        EXPECT_EQ(DrawingContext::current(), &outer);
        {
            DrawingContext inner(page, store);
            EXPECT_EQ(DrawingContext::current(), &inner);
        }
        EXPECT_EQ(DrawingContext::current(), &outer);
    }
    EXPECT_EQ(DrawingContext::current(), nullptr);
}

TEST(DrawingContext, BelongsToItsThread) {
    const PDFPage page;
    std::any store;
    DrawingContext context(page, store);
    DrawingContext* elsewhere = &context;
    std::thread([&elsewhere] { elsewhere = DrawingContext::current(); }).join();
    EXPECT_EQ(elsewhere, nullptr);
}

TEST(DrawingContext, OnlyItsOwnPageHasContentThere) {
    PDFPage page;
    PDFPage other;
    std::any store;
    DrawingContext context(page, store);
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
