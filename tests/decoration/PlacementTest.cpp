// Where the watermark and the page numbers stand, as another program sees it in the written file.

#include "decoration/WaterMark.h"
#include "platform/pdf/DrawingContext.h"
#include "tests/decoration/DecorationTest.h"

#include <any>
#include <cmath>

namespace quillon::test {
namespace {

const QString mark = QStringLiteral("Confidential");

class PlacementTest : public DecorationTest {
protected:
    /// Where a text that begins so stands on the first page, in its user space.
    static QPointF placeOf(const std::string& file, const QString& beginning, const std::string& reference = {}) {
        const auto texts = tracedTexts(file);
        const auto own = reference.empty() ? texts : tracedTexts(reference);
        return textThatBegins(texts, beginning).originOn(textThatBegins(own, QStringLiteral("Body")));
    }
    static double markWidth() { return sizeWithAttributes(mark, watermarkAttributes()).width(); }
    static double numberWidth(const QString& text = QStringLiteral("Page 1")) {
        return sizeWithAttributes(text, {}).width();
    }
    /// The reader computes and prints with seven digits.
    static void expectNear(const QPointF& place, const QPointF& expected, const std::string& entries) {
        EXPECT_NEAR(place.x(), expected.x(), 1e-3) << entries;
        EXPECT_NEAR(place.y(), expected.y(), 1e-3) << entries;
    }
    /// Expects the watermark and, in the middle, the first page number where a page with this media box has them.
    void expectPlaced(const std::string& entries, const QRectF& box) {
        watermark(mark);
        numbers(1);
        const std::string file = written(onePage(entries));
        double x = std::trunc(box.x() + (box.width() - markWidth()) / 2);
        double y = std::trunc(box.height() / 2);
        if (x > 1000) x = 500;
        if (y > 1000) y = 500;
        expectNear(placeOf(file, mark), {x, y}, entries);
        expectNear(placeOf(file, QStringLiteral("Page 1")), {std::trunc((box.width() - numberWidth()) / 2), 0},
                   entries);
    }
};

TEST_F(PlacementTest, OnAPortraitPage) {
    expectPlaced("/MediaBox[0 0 612 792]", {0, 0, 612, 792});
}

TEST_F(PlacementTest, OnALandscapePage) {
    expectPlaced("/MediaBox[0 0 842 595]", {0, 0, 842, 595});
}

TEST_F(PlacementTest, TheOriginOfTheBoxMovesOnlyTheWatermarkAndOnlySideways) {
    expectPlaced("/MediaBox[100 50 700 850]", {100, 50, 600, 800});
    expectPlaced("/MediaBox[-300 -400 300 400]", {-300, -400, 600, 800});
}

TEST_F(PlacementTest, PositionsAreTruncatedTowardZero) {
    expectPlaced("/MediaBox[-499.5 0 0.2 791.9]", {-499.5, 0, 499.7, 791.9});
}

TEST_F(PlacementTest, BeyondAThousandTheWatermarkStandsAtFiveHundred) {
    expectPlaced("/MediaBox[0 0 3000 3000]", {0, 0, 3000, 3000});
}

TEST_F(PlacementTest, TheTwoLimitsAreIndependent) {
    expectPlaced("/MediaBox[0 0 3000 800]", {0, 0, 3000, 800});
    expectPlaced("/MediaBox[0 0 600 3000]", {0, 0, 600, 3000});
}

TEST_F(PlacementTest, AThousandItselfIsNoneTooMany) {
    expectPlaced("/MediaBox[0 0 600 2000]", {0, 0, 600, 2000});
    expectPlaced("/MediaBox[0 0 600 2002]", {0, 0, 600, 2002});
}

TEST_F(PlacementTest, TheFractionOfTheHeightHasSinglePrecision) {
    watermark(mark);
    const auto document = open(onePage("/MediaBox[0 0 600 1000]"));
    const auto page = std::dynamic_pointer_cast<WaterMark>(document->pageAtIndex(0));
    ASSERT_NE(page, nullptr);
    std::any store;
    DrawingContext context(*page, store);
    page->doAddWatermark(PDFDisplayBox::MediaBox, 0.7F);
    const auto marks = context.takeMarks();
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_EQ(marks.front().origin.y(), 699) << "as a float, 0.7 is a little less";
}

TEST_F(PlacementTest, OnTurnedPagesTheUserSpaceCounts) {
    for (const char* rotation : {"90", "180", "270", "-90"}) {
        expectPlaced(std::string("/MediaBox[0 0 600 800]/Rotate ") + rotation, {0, 0, 600, 800});
    }
}

TEST_F(PlacementTest, InLargerUnitsTheNumbersAreTheSame) {
    expectPlaced("/MediaBox[0 0 600 800]/UserUnit 2", {0, 0, 600, 800});
}

TEST_F(PlacementTest, TheCropBoxDoesNotCount) {
    expectPlaced("/MediaBox[0 0 600 800]/CropBox[0 0 500 500]", {0, 0, 600, 800});
}

TEST_F(PlacementTest, ContentThatChangesTheUserSpaceDoesNotMoveThem) {
    watermark(mark);
    numbers(1);
    const std::string plain = written(onePage("/MediaBox[0 0 600 800]"));
    const QPointF markPlace = placeOf(plain, mark);
    const QPointF numberPlace = placeOf(plain, QStringLiteral("Page 1"));
    const std::string reference = dir.write("plain.pdf", onePage("/MediaBox[0 0 600 800]"));
    for (const auto& [before, after] :
         {std::pair(".5 0 0 .5 50 50 cm 1 0 0 rg ", ""), std::pair("q .5 0 0 .5 50 50 cm ", ""),
          std::pair("q q 2 0 0 2 0 0 cm ", " Q"), std::pair("", " Q Q 3 0 0 3 0 0 cm"),
          std::pair("Q Q ", " q 0 0 10 10 re W n"), std::pair("0 1 -1 0 0 0 cm /Tag BMC ", ""),
          std::pair("q .1 0 0 .1 0 0 cm ", " BT /F 9 Tf (unclosed")}) {
        numbers(1);
        const std::string file = written(onePage("/MediaBox[0 0 600 800]", before, after));
        EXPECT_EQ(placeOf(file, mark, reference), markPlace) << before << "..." << after;
        EXPECT_EQ(placeOf(file, QStringLiteral("Page 1"), reference), numberPlace) << before << "..." << after;
    }
}

TEST_F(PlacementTest, AWatermarkAHundredPointsWideStandsAt250And400) {
    QString text;
    for (int m = 0; m < 6 && text.isEmpty(); ++m) {
        for (int i = 0; i < 24 && text.isEmpty(); ++i) {
            for (int dot = 0; dot < 20 && text.isEmpty(); ++dot) {
                const QString tried = QStringLiteral("X") + QString(m, QLatin1Char('m')) +
                                      QString(i, QLatin1Char('i')) + QString(dot, QLatin1Char('.'));
                const double width = sizeWithAttributes(tried, watermarkAttributes()).width();
                if (width > 99 && width <= 100) text = tried;
            }
        }
    }
    ASSERT_FALSE(text.isEmpty());
    watermark(text);
    EXPECT_EQ(placeOf(written(onePage("/MediaBox[0 0 600 800]")), QStringLiteral("X")), QPointF(250, 400));
}

TEST_F(PlacementTest, ANumberFortyPointsWideStandsAt552OnTheRight) {
    const QString sans = QStringLiteral("Microsoft Sans Serif");
    const double width = sizeWithAttributes(QStringLiteral("p 7"), attributes(sans, 1)).width();
    const TextAttributes fitting = attributes(sans, 40 / width * (1 - 1e-12));
    EXPECT_NEAR(sizeWithAttributes(QStringLiteral("p 7"), fitting).width(), 40, 1e-6);
    numbers(2, QStringLiteral("p"), 7, 1, fitting);
    EXPECT_EQ(placeOf(written(onePage("/MediaBox[0 0 612 792]")), QStringLiteral("p 7")), QPointF(552, 0));
}

TEST_F(PlacementTest, NumbersStandLeftInTheMiddleOrRight) {
    const double width = numberWidth();
    const double places[] = {0, std::trunc((612 - width) / 2), std::trunc(612 - 1.5 * width)};
    for (std::uint32_t position = 0; position < 3; ++position) {
        numbers(position);
        EXPECT_EQ(placeOf(written(onePage("/MediaBox[100 50 712 842]")), QStringLiteral("Page 1")),
                  QPointF(places[position], 0))
            << position;
    }
}

TEST_F(PlacementTest, TheLineBoxStandsOnThePoint) {
    numbers(0, QStringLiteral("Page"), 1, 1, attributes(QStringLiteral("DejaVu Sans"), 30));
    const std::string file = written(onePage("/MediaBox[0 0 612 792]"));
    const auto boxes = runProgram(QStringLiteral("pdftotext"),
                                  {QStringLiteral("-bbox"), QString::fromStdString(file), QStringLiteral("-")});
    const QString text = QString::fromStdString(boxes.output);
    const auto line = text.mid(text.indexOf(QStringLiteral("xMin"), text.indexOf(QStringLiteral("Body"))));
    const auto value = [&line](const char* name) {
        const auto at = line.indexOf(QLatin1String(name)) + 6;
        return line.mid(at, line.indexOf(QLatin1Char('"'), at) - at).toDouble();
    };
    EXPECT_TRUE(line.contains(QStringLiteral(">Page<"))) << boxes.output;
    EXPECT_NEAR(value("xMin"), 0, 0.01);
    // The box reaches from the descent to the ascent; y runs downwards. Layout rounds both to hundredths of an em.
    EXPECT_NEAR(value("yMax"), 792, 30 * 0.01);
    const double size =
        sizeWithAttributes(QStringLiteral("Page 1"), attributes(QStringLiteral("DejaVu Sans"), 30)).height();
    EXPECT_NEAR(value("yMax") - value("yMin"), size, 30 * 0.02);
}

TEST_F(PlacementTest, WhatIsMeasuredIsWhatIsDrawn) {
    watermark(mark);
    const auto drawn = textThatBegins(tracedTexts(written(onePage("/MediaBox[0 0 612 792]"))), mark);
    EXPECT_NEAR(drawn.width, markWidth(), 0.05);
}

}  // namespace
}  // namespace quillon::test
