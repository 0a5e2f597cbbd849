#include "platform/pdf/Color.h"
#include "platform/pdf/PDFDocument.h"
#include "platform/text/Font.h"
#include "platform/text/TextDrawing.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/TempDir.h"

#include <QFontDatabase>
#include <QImage>
#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace quillon {
namespace {

/// A blank page on which a function draws.
class DrawnPage final : public PDFPage {
public:
    explicit DrawnPage(std::function<void()> draw) : draw_(std::move(draw)) {}
    void drawWithBox(PDFDisplayBox) override { draw_(); }

private:
    std::function<void()> draw_;
};

class TextDrawing : public testing::Test {
protected:
    static TextAttributes attributes(const char* font, double size = 20) {
        return attributesWithObjectsAndKeys(
            {{Font::objectWithName(QString::fromLatin1(font), size), NSFontAttributeName}});
    }
    /// A file of one page with the text in the middle, at the left.
    std::string drawn(const QString& text, const TextAttributes& attributes) const {
        PDFDocument document;
        document.insertPage(std::make_shared<DrawnPage>([&] { drawAtPoint(text, {10, 400}, attributes); }), 0);
        const QUrl url = QUrl::fromLocalFile(QString::fromStdString(dir.file("out.pdf")));
        EXPECT_TRUE(document.writeToURL(url, {}));
        EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf")), "");
        return dir.file("out.pdf");
    }
    std::string extracted(const QString& text, const char* font = "DejaVu Sans") const {
        return test::pageMarks(drawn(text, attributes(font))).at(0);
    }
    QImage image(const std::string& file) const {
        const QString prefix = QString::fromStdString(dir.file("drawn"));
        const auto result = test::runProgram(QStringLiteral("pdftoppm"),
                                             {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-singlefile"),
                                              QStringLiteral("-png"), QString::fromStdString(file), prefix});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, "") << "no font is found wanting";
        return QImage(prefix + QStringLiteral(".png"));
    }
    /// Pixels that are not white, within the line box of a text at the left and anywhere else.
    std::pair<int, int> inked(const QString& text, const char* font) const {
        const QImage page = image(drawn(text, attributes(font)));
        const QSizeF size = sizeWithAttributes(text, attributes(font));
        const QRectF box(10, 792 - 400 - size.height(), size.width(), size.height());
        int inside = 0;
        int outside = 0;
        for (int y = 0; y < page.height(); ++y) {
            for (int x = 0; x < page.width(); ++x) {
                if (qGray(page.pixel(x, y)) > 250) continue;
                ++(box.adjusted(-2, -2, 2, 2).contains(x, y) ? inside : outside);
            }
        }
        return {inside, outside};
    }

    const test::TempDir dir;
};

TEST_F(TextDrawing, WithoutAContextNothingHappens) {
    drawAtPoint(QStringLiteral("text"), {0, 0}, {});
    EXPECT_GT(sizeWithAttributes(QStringLiteral("text"), {}).width(), 10);
}

TEST_F(TextDrawing, SizesGrowWithTheFont) {
    const double ten = sizeWithAttributes(QStringLiteral("text"), attributes("DejaVu Sans", 10)).width();
    EXPECT_NEAR(sizeWithAttributes(QStringLiteral("text"), attributes("DejaVu Sans", 25)).width(), 2.5 * ten, 1e-9);
}

TEST_F(TextDrawing, TextOfEveryScriptIsDrawnAndFoundAgain) {
    for (const char* text : {"Latin: office \xc3\xa9 e\xcc\x81", "Ωμέγα", "Жук", "中文"}) {
        EXPECT_EQ(QString::fromStdString(extracted(QString::fromUtf8(text))).normalized(QString::NormalizationForm_C),
                  QString::fromUtf8(text).normalized(QString::NormalizationForm_C));
    }
    for (const char* text : {"Ab", "Ωμέγα", "Жук", "العربية", "שלום", "中文", "😀", "👨‍👩‍👧"}) {
        const auto [inside, outside] = inked(QString::fromUtf8(text), "DejaVu Sans");
        EXPECT_GT(inside, 40) << text;
        EXPECT_EQ(outside, 0) << text;
    }
}

TEST_F(TextDrawing, TextFromTheRightIsFoundAgain) {
    for (const char* text : {"العربية", "שלום"}) {
        EXPECT_NE(extracted(QString::fromUtf8(text)).find(text), std::string::npos) << text;
    }
}

TEST_F(TextDrawing, AFontWithTrueTypeOutlinesIsEmbedded) {
    const test::JudgedPdf pdf(drawn(QStringLiteral("Text"), attributes("DejaVu Sans")));
    EXPECT_EQ(pdf.having(QStringLiteral("/Subtype"), QStringLiteral("/CIDFontType2")).size(), 1);
    EXPECT_EQ(extracted(QStringLiteral("Text")), "Text");
}

TEST_F(TextDrawing, AFontThatCannotBeEmbeddedIsDrawnAndFoundAgain) {
    ASSERT_TRUE(QFontDatabase::hasFamily(QStringLiteral("Nimbus Sans"))) << "fonts-urw-base35 is missing";
    const QString text = QStringLiteral("Text (1)");
    EXPECT_EQ(extracted(text, "Nimbus Sans"), "Text (1)");
    const auto [inside, outside] = inked(text, "Nimbus Sans");
    EXPECT_GT(inside, 100);
    EXPECT_EQ(outside, 0);
}

TEST_F(TextDrawing, PicturesFillTheRoomThatTheyAreGiven) {
    const QString thumb = QString::fromUtf8("👍");
    for (int time = 0; time < 2; ++time) {  // to draw it must not change how it is measured
        const QImage page = image(drawn(thumb, attributes("DejaVu Sans", 100)));
        const double width = sizeWithAttributes(thumb, attributes("DejaVu Sans", 100)).width();
        EXPECT_NEAR(width, 106, 10);
        int right = 0;
        for (int y = 0; y < page.height(); ++y) {
            for (int x = right; x < page.width(); ++x) right = qGray(page.pixel(x, y)) > 250 ? right : x;
        }
        EXPECT_GT(right, 10 + 0.8 * width);
        EXPECT_LE(right, 10 + width);
    }
}

TEST_F(TextDrawing, MoreThan256GlyphsOfADrawnFontAreDrawn) {
    QString text;
    for (char16_t c = 0x21; c < 0x180; ++c) {
        if (QChar(c).isLetter()) text += QChar(c);
    }
    const std::string file = drawn(text, attributes("Nimbus Sans", 1));
    EXPECT_EQ(test::pageMarks(file).at(0), text.toStdString());
}

TEST_F(TextDrawing, ACharacterThatNoFontHasIsABoxAndFoundAgain) {
    const QString text = QStringLiteral("a") + QChar(0xE123) + QStringLiteral("b");
    EXPECT_EQ(extracted(text), text.toStdString());
}

TEST_F(TextDrawing, OddTextsAreNeverABrokenFile) {
    QString odd;
    for (int i = 0; i < 2'000; ++i) {
        odd += QStringLiteral("a\t\n") + QChar(0) + QChar(0xD800 + i % 0x800);
    }
    for (const QString& text : {odd, QString(10'000, QLatin1Char('(')), QString(10'000, QChar(0x05D0)),
                                QStringLiteral("\\)(\r>"), QString(500, QChar(0x0301)), QString(QChar(0x202E))}) {
        const std::string file = drawn(text, attributes("DejaVu Sans"));
        EXPECT_EQ(image(file).size(), QSize(612, 792));
    }
}

}  // namespace
}  // namespace quillon
