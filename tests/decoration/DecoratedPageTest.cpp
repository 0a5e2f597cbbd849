// What the decoration looks like, and that it leaves the pages under it alone.

#include "decoration/WaterMark.h"
#include "platform/image/Image.h"
#include "tests/decoration/DecorationTest.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"

#include <QColor>
#include <QImage>

#include <cmath>
#include <set>

namespace quillon::test {
namespace {

using Strings = std::vector<std::string>;
const QString mark = QStringLiteral("Confidential");
constexpr const char* letter = "/MediaBox[0 0 612 792]";

class DecoratedPageTest : public DecorationTest {
protected:
    /// A page as pdftoppm draws it, 72 pixels an inch.
    QImage drawn(const std::string& file, int page = 1) const {
        const QString prefix = QString::fromStdString(dir.file("drawn"));
        const auto result =
            runProgram(QStringLiteral("pdftoppm"),
                       {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-f"), QString::number(page),
                        QStringLiteral("-singlefile"), QStringLiteral("-png"), QString::fromStdString(file), prefix});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return QImage(prefix + QStringLiteral(".png"));
    }
    /// Expects a page of a file to look the same with a decoration as without, wherever the decoration of a blank page
    /// with these entries leaves it white.
    void expectUnharmed(const std::string& bytes, const std::string& entries, int page = 1) {
        switchOff();
        const QImage plain = drawn(written(bytes), page);
        watermark(mark);
        numbers(1);
        const QImage painted = drawn(written(bytes), page);
        numbers(1, QStringLiteral("Page"), page);
        const QImage paint = drawn(written(blankPage(entries)));
        ASSERT_EQ(plain.size(), painted.size()) << entries;
        ASSERT_EQ(plain.size(), paint.size()) << entries;
        int differing = 0;
        for (int y = 0; y < plain.height(); ++y) {
            for (int x = 0; x < plain.width(); ++x) {
                if (plain.pixel(x, y) == painted.pixel(x, y)) continue;
                ++differing;
                ASSERT_NE(paint.pixelColor(x, y), QColor(Qt::white)) << entries << " at " << x << ' ' << y;
            }
        }
        EXPECT_GT(differing, 100) << entries;
    }
    /// What a page ends with, a word and a number.
    static std::string tail(const std::string& text) {
        return QString::fromStdString(text).section(QLatin1Char(' '), -2).toStdString();
    }
    /// The texts of the pages, the words of each in a row, in the order that pdftotext finds best to read.
    static Strings words(const std::string& file) {
        Strings pages = pageMarks(file);
        for (std::string& page : pages) page = QString::fromStdString(page).simplified().toStdString();
        return pages;
    }
};

TEST_F(DecoratedPageTest, SwitchedOffThePagesAreTheirContentAlone) {
    const std::string bytes = PdfFixture("A", 2).bytes();
    const std::string file = written(bytes);
    EXPECT_EQ(words(file), (Strings{"A1", "A2"}));
    EXPECT_EQ(JudgedPdf(file).having(QStringLiteral("/Type"), QStringLiteral("/Font")).size(), 1);
    EXPECT_EQ(JudgedPdf(file).having(QStringLiteral("/Subtype"), QStringLiteral("/Form")).size(), 0);
}

TEST_F(DecoratedPageTest, TheWatermarkIsRedAndTranslucentTwentyPointsLarge) {
    watermark(mark);
    const auto text = textThatBegins(tracedTexts(written(onePage("/MediaBox[0 0 612 792]"))), mark);
    EXPECT_EQ(text.color, QStringLiteral("1 0 0"));
    EXPECT_NEAR(text.alpha, 0.6, 1e-6);
    EXPECT_EQ(text.size, 20);
}

TEST_F(DecoratedPageTest, NumbersHaveTheirAttributes) {
    numbers(0, QStringLiteral("Page"), 1, 1, attributes(QStringLiteral("DejaVu Sans"), 9.5, Color::sRGB(0, 0.5, 1, 1)));
    const auto text = textThatBegins(tracedTexts(written(onePage("/MediaBox[0 0 612 792]"))), QStringLiteral("Page"));
    EXPECT_EQ(text.color, QStringLiteral("0 .5 1"));
    EXPECT_EQ(text.alpha, 1);
    EXPECT_EQ(text.size, 9.5);
    EXPECT_TRUE(text.font.endsWith(QStringLiteral("+DejaVuSans"))) << text.font.toStdString();
}

TEST_F(DecoratedPageTest, WithoutAttributesNumbersAreBlackInTheDefaultFontAtTwelvePoints) {
    numbers(0, QStringLiteral("Page"), 1, 1, attributes(QStringLiteral("No Such Font"), 30));
    const auto text = textThatBegins(tracedTexts(written(onePage("/MediaBox[0 0 612 792]"))), QStringLiteral("Page"));
    EXPECT_EQ(text.color, QStringLiteral("0"));
    EXPECT_EQ(text.size, 12);
}

TEST_F(DecoratedPageTest, TheWatermarkIsUnderTheNumberAndBothAreOverTheContent) {
    watermark(mark);
    numbers(0);
    const auto texts = tracedTexts(written(onePage("/MediaBox[0 0 612 792]")));
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0].text, QStringLiteral("Body"));
    EXPECT_EQ(texts[1].text, mark);
    EXPECT_EQ(texts[2].text, QStringLiteral("Page 1"));
}

TEST_F(DecoratedPageTest, NumbersCountTheDrawnPages) {
    numbers(0, QStringLiteral("Page"), 10, 5);
    EXPECT_EQ(words(written(PdfFixture("A", 3).bytes())), (Strings{"A1 Page 10", "A2 Page 15", "A3 Page 20"}));
}

TEST_F(DecoratedPageTest, AnEmptyPrefixLeavesTheBlankInFront) {
    numbers(0, QStringLiteral(""));
    const auto text = tracedTexts(written(onePage("/MediaBox[0 0 612 792]"))).back();
    EXPECT_EQ(text.text, QStringLiteral(" 1"));
}

TEST_F(DecoratedPageTest, ANegativeStepCountsDown) {
    numbers(0, QStringLiteral("Page"), 0, -1);
    EXPECT_EQ(words(written(PdfFixture("A", 3).bytes())), (Strings{"A1 Page 0", "A2 Page -1", "A3 Page -2"}));
}

TEST_F(DecoratedPageTest, StepZeroNumbersEveryPageAlike) {
    numbers(0, QStringLiteral("Page"), 0, 0);
    EXPECT_EQ(words(written(PdfFixture("A", 2).bytes())), (Strings{"A1 Page 0", "A2 Page 0"}));
}

TEST_F(DecoratedPageTest, EveryWritingStartsWhereTheCountStandsOrIsSet) {
    const auto document = open(PdfFixture("A", 2).bytes());
    numbers(0);
    EXPECT_EQ(words(write(*document)), (Strings{"A1 Page 1", "A2 Page 2"}));
    EXPECT_EQ(words(write(*document)), (Strings{"A1 Page 3", "A2 Page 4"}));
    Utility::setPageNumberBegin(1, 1);
    EXPECT_EQ(words(write(*document)), (Strings{"A1 Page 1", "A2 Page 2"}));
}

TEST_F(DecoratedPageTest, APlainPageBetweenOthersHasNoDecorationAndNoNumber) {
    watermark(mark);
    numbers(0);
    const auto document = open(PdfFixture("A", 2).bytes());
    dir.write("plain.pdf", PdfFixture("B", 1).bytes());
    document->insertPage(PDFDocument::initWithURL(url("plain.pdf"))->pageAtIndex(0), 1);
    document->insertPage(std::make_shared<WaterMark>(), 2);
    const Strings marks = words(write(*document));
    ASSERT_EQ(marks.size(), 4U);
    EXPECT_EQ(tail(marks[0]), "Page 1");
    EXPECT_EQ(marks[1], "B1");
    EXPECT_EQ(marks[2], "Page 2 Confidential") << "a blank page is decorated like any other";
    EXPECT_EQ(tail(marks[3]), "Page 3");
}

TEST_F(DecoratedPageTest, PagesOfPicturesAreDecorated) {
    watermark(mark);
    numbers(0);
    std::string bytes = "P5\n300 400\n255\n" + std::string(300 * 400, '\xC0');
    const auto image =
        Image::initWithContentsOfURL(QUrl::fromLocalFile(QString::fromStdString(dir.write("gray.pgm", bytes))));
    MyPdfDocument document;
    document.insertPage(WaterMark::initWithImage(image), 0);
    const std::string file = write(document);
    EXPECT_EQ(words(file), Strings{"Page 1 Confidential"});
    EXPECT_EQ(qBlue(drawn(file).pixel(5, 5)), 0xC0);
}

TEST_F(DecoratedPageTest, AnEmptyWatermarkDrawsNothing) {
    watermark(QStringLiteral(""));
    EXPECT_EQ(words(written(PdfFixture("A", 1).bytes())), Strings{"A1"});
}

TEST_F(DecoratedPageTest, TextsAreOneLineWhateverIsInThem) {
    QString odd = QStringLiteral("Start");
    while (odd.size() < 10'000) {
        odd += QStringLiteral("a\tb\nc\r\nd") + QChar(0) + QChar(0x2028) + QChar(0xD800) + QChar(0xDFFF);
    }
    watermark(odd);
    numbers(0, odd);
    const std::string file = written(onePage(letter));
    const auto texts = tracedTexts(file);
    const auto body = textThatBegins(texts, QStringLiteral("Body"));
    std::set<double> lines;
    for (const auto& text : texts) lines.insert(std::round(text.originOn(body).y() + text.start.y()));
    EXPECT_EQ(lines.size(), 3U) << "the body, the watermark and the number";
    EXPECT_FALSE(drawn(file).isNull());
    EXPECT_NE(pageMarks(file).at(0).find("Start"), std::string::npos);
}

TEST_F(DecoratedPageTest, TextsOfEveryScriptAreShownAndFoundAgain) {
    const QString text = QString::fromUtf8("Draft Ωμέγα Жук العربية שלום 中文 😀");
    watermark(text);
    numbers(0, text);
    const std::string file = written(blankPage("/MediaBox[0 0 900 400]"));
    const QString found = QString::fromStdString(pageMarks(file).at(0));
    for (const QString& word : text.split(QLatin1Char(' '))) {
        EXPECT_EQ(found.count(word), 2) << word.toStdString() << " in " << found.toStdString();
    }
}

TEST_F(DecoratedPageTest, OnlyThreePositionsAreKnown) {
    numbers(3);
    const auto document = open(PdfFixture("A", 1).bytes());
    EXPECT_DEATH(static_cast<void>(document->writeToURL(url("out.pdf"), {})),
                 R"(WaterMark:90: -\[WaterMark addPageNumber:\]: Assertion `NO' failed)");
}

TEST_F(DecoratedPageTest, ThePageUnderItLooksAsBefore) {
    // A yellow ground and lines across, so that whatever is moved, hidden or painted over shows.
    const std::string ground = "1 1 0 rg -400 -400 3600 3600 re f 0 0 1 RG 0 0 m 900 900 l 0 900 m 900 0 l S 0 g ";
    for (const char* entries :
         {letter, "/MediaBox[0 0 842 595]", "/MediaBox[100 50 700 850]", "/MediaBox[-300 -400 300 400]",
          "/MediaBox[0 0 3000 3000]", "/MediaBox[0 0 600 800]/Rotate 90", "/MediaBox[0 0 600 800]/Rotate 180",
          "/MediaBox[0 0 600 800]/Rotate 270", "/MediaBox[0 0 600 800]/UserUnit 2",
          "/MediaBox[0 0 600 800]/CropBox[0 0 500 500]"}) {
        expectUnharmed(onePage(entries, ground), entries);
    }
    expectUnharmed(onePage(letter, "1 0 0 rg 50 600 100 100 re f .3 g q 2 0 0 2 0 0 cm ", " Q"), letter);
}

TEST_F(DecoratedPageTest, ContentThatIsNotBalancedLooksAsBefore) {
    expectUnharmed(onePage(letter, "q .5 0 0 .5 50 50 cm 1 0 0 rg "), letter);
    expectUnharmed(onePage(letter, "1 0 0 rg 20 600 50 50 re f ", " Q Q 60 600 50 50 re f"), letter);
    expectUnharmed(onePage(letter, "", " q 0 0 612 300 re W n 0 1 0 rg 0 0 612 200 re f"), letter);
    expectUnharmed(onePage("/MediaBox[100 50 700 850]/Rotate 90", "q 1 0 0 rg 200 100 50 50 re f "),
                   "/MediaBox[100 50 700 850]/Rotate 90");
}

/// Two pages that share what they show and what they need for it.
std::string sharingPages(const std::string& resources, const std::string& contents) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R 4 0 R]/Count 2/Resources " + resources + "/MediaBox[0 0 612 792]>>");
    pdf.object(3, "<</Type/Page/Parent 2 0 R/Contents " + contents + ">>");
    pdf.object(4, "<</Type/Page/Parent 2 0 R/Contents " + contents + "/Resources " + resources + ">>");
    pdf.stream(5, {}, "q BT /F 24 Tf 100 700 Td (Body) Tj");
    pdf.stream(6, {}, "ET Q");
    pdf.object(7, "[5 0 R 6 0 R]");
    pdf.object(8, "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    pdf.object(9, "<</F 8 0 R>>");
    pdf.object(10, "<</Font 9 0 R>>");
    return pdf.table().bytes();
}

TEST_F(DecoratedPageTest, PagesThatShareContentAndResourcesAreEachPaintedOnce) {
    for (const char* resources : {"<</Font<</F 8 0 R>>>>", "<</Font 9 0 R>>", "10 0 R"}) {
        for (const char* contents : {"[5 0 R 6 0 R]", "7 0 R"}) {
            const std::string bytes = sharingPages(resources, contents);
            expectUnharmed(bytes, letter, 1);
            expectUnharmed(bytes, letter, 2);
            numbers(0);
            watermark(mark);
            const std::string file = written(bytes);
            const Strings marks = words(file);
            ASSERT_EQ(marks.size(), 2U);
            EXPECT_EQ(marks[0], "Page 1 Body Confidential") << resources << contents;
            EXPECT_EQ(marks[1], "Page 2 Body Confidential") << resources << contents;
            const double width = sizeWithAttributes(mark, watermarkAttributes()).width();
            for (int page = 1; page <= 2; ++page) {
                const auto texts = tracedTexts(file, page);
                const auto body = textThatBegins(texts, QStringLiteral("Body"));
                EXPECT_EQ(textThatBegins(texts, QStringLiteral("Page")).originOn(body), QPointF(0, 0));
                EXPECT_EQ(textThatBegins(texts, mark).originOn(body), QPointF(std::trunc((612 - width) / 2), 396));
            }
        }
    }
}

TEST_F(DecoratedPageTest, APlainPageThatSharesTheContentStaysPlain) {
    numbers(0);
    dir.write("in.pdf", sharingPages("10 0 R", "7 0 R"));
    const auto document = MyPdfDocument::initWithURL(url("in.pdf"));
    document->removePageAtIndex(1);
    document->insertPage(PDFDocument::initWithURL(url("in.pdf"))->pageAtIndex(1), 1);
    EXPECT_EQ(words(write(*document)), (Strings{"Page 1 Body", "Body"}));
}

TEST_F(DecoratedPageTest, APageTakenTwiceHasTwoNumbers) {
    numbers(0);
    const auto document = open(PdfFixture("A", 1).bytes());
    document->insertPage(document->pageAtIndex(0), 1);
    EXPECT_EQ(words(write(*document)), (Strings{"A1 Page 1", "A1 Page 2"}));
}

TEST_F(DecoratedPageTest, WhatWasPaintedBeforeIsPaintedOver) {
    numbers(0, QStringLiteral("First"));
    watermark(mark);
    const std::string once = written(PdfFixture("A", 2).bytes());
    numbers(2, QStringLiteral("Second"));
    Utility::resetShouldAddwaterMark();
    dir.write("again.pdf", "");
    std::filesystem::copy_file(once, dir.file("again.pdf"), std::filesystem::copy_options::overwrite_existing);
    const auto document = MyPdfDocument::initWithURL(url("again.pdf"));
    const Strings marks = words(write(*document));
    ASSERT_EQ(marks.size(), 2U);
    for (const char* part : {"A2", "Confidential", "First 2", "Second 2"}) {
        EXPECT_NE(marks[1].find(part), std::string::npos) << part << " in " << marks[1];
    }
}

TEST_F(DecoratedPageTest, FontsAndWatermarkAreInTheFileOnce) {
    watermark(mark);
    numbers(1);
    const JudgedPdf out(written(PdfFixture("A", 40).bytes()));
    EXPECT_EQ(out.having(QStringLiteral("/Subtype"), QStringLiteral("/Type0")).size(), 1);
    EXPECT_EQ(out.having(QStringLiteral("/Subtype"), QStringLiteral("/CIDFontType2")).size(), 1);
    EXPECT_EQ(out.having(QStringLiteral("/Subtype"), QStringLiteral("/Form")).size(), 1);
}

TEST_F(DecoratedPageTest, WhatIsPaintedIsAnArtifact) {
    numbers(1);
    const std::string file = written(onePage("/MediaBox[0 0 612 792]", "/P <</MCID 0>> BDC ", " EMC"));
    const auto shown = runProgram(QStringLiteral("qpdf"),
                                  {QStringLiteral("--qdf"), QString::fromStdString(file), QStringLiteral("-")});
    EXPECT_NE(shown.output.find("/Artifact BMC q "), std::string::npos);
    EXPECT_NE(shown.output.find("/P <</MCID 0>> BDC "), std::string::npos) << "tagged content is no form";
    EXPECT_EQ(shown.output.find("/Subtype /Form"), std::string::npos);
}

TEST_F(DecoratedPageTest, TheSameDocumentGivesTheSameBytes) {
    const auto bytesOf = [this] {
        watermark(mark);
        numbers(1);
        const auto result =
            runProgram(QStringLiteral("cat"), {QString::fromStdString(written(PdfFixture("A", 9).bytes()))});
        return result.output;
    };
    EXPECT_EQ(bytesOf(), bytesOf());
}

}  // namespace
}  // namespace quillon::test
