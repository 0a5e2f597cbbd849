#include "platform/pdf/DrawingContext.h"
#include "platform/pdf/PDFPage.h"

#include <gtest/gtest.h>

#include <any>
#include <memory>
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

class Nothing final : public Drawing {
public:
    [[nodiscard]] pdf::PaintContent content() const override { return {}; }
    [[nodiscard]] pdf::Rectangle bounds() const override { return {}; }
};

TEST(DrawingContext, TheFillColourIsSavedAndRestored) {
    const PDFPage page;
    std::any store;
    DrawingContext context(page, store);
    const auto drawing = std::make_shared<const Nothing>();
    context.draw(drawing, {1, 2});
    context.setFillColor(Color::redColor());
    context.saveGraphicsState();
    context.setFillColor(Color::sRGB(255, -1, 0.5, 0.6));
    context.draw(drawing, {});
    context.restoreGraphicsState();
    context.draw(drawing, {});
    context.restoreGraphicsState();  // nothing was saved
    context.draw(drawing, {});
    const auto marks = context.takeMarks();
    ASSERT_EQ(marks.size(), 4U);
    EXPECT_EQ(marks[0].color, Color::blackColor());
    EXPECT_EQ(marks[0].origin, QPointF(1, 2));
    EXPECT_EQ(marks[1].color, (Color{1, 0, 0.5, 0.6}));
    EXPECT_EQ(marks[2].color, Color::redColor());
    EXPECT_EQ(marks[3].color, Color::redColor());
    EXPECT_TRUE(context.takeMarks().empty());
}

}  // namespace
}  // namespace quillon
