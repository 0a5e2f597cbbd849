#include "decoration/MyPdfDocument.h"
#include "decoration/WaterMark.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

QUrl urlOf(const std::string& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path));
}

TEST(MyPdfDocument, APlainOneHasNoPages) {
    EXPECT_EQ(MyPdfDocument().pageCount(), 0);
}

TEST(MyPdfDocument, MakesItsPagesAsWaterMarkPages) {
    const auto page = MyPdfDocument().pageClass()();
    EXPECT_NE(std::dynamic_pointer_cast<WaterMark>(page), nullptr);
}

TEST(MyPdfDocument, ThePagesOfAFileAreWaterMarkPages) {
    const test::TempDir dir;
    const auto document = MyPdfDocument::initWithURL(urlOf(dir.write("a.pdf", test::PdfFixture("A", 2).bytes())));
    ASSERT_NE(document, nullptr);
    ASSERT_EQ(document->pageCount(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_NE(std::dynamic_pointer_cast<WaterMark>(document->pageAtIndex(i)), nullptr) << i;
    }
}

TEST(MyPdfDocument, ThePagesOfAPlainDocumentAreNot) {
    const test::TempDir dir;
    const auto document = PDFDocument::initWithURL(urlOf(dir.write("a.pdf", test::PdfFixture("A", 1).bytes())));
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<WaterMark>(document->pageAtIndex(0)), nullptr);
}

TEST(MyPdfDocument, AFileThatIsNoPdfGivesNoDocument) {
    const test::TempDir dir;
    EXPECT_EQ(MyPdfDocument::initWithURL(urlOf(dir.write("a.pdf", "plain text"))), nullptr);
    EXPECT_EQ(MyPdfDocument::initWithURL(urlOf(dir.write("empty.pdf", ""))), nullptr);
    EXPECT_EQ(MyPdfDocument::initWithURL(urlOf(dir.file("missing.pdf"))), nullptr);
    EXPECT_EQ(MyPdfDocument::initWithURL(urlOf(dir.path().string())), nullptr);
    EXPECT_EQ(MyPdfDocument::initWithURL(QUrl()), nullptr);
}

}  // namespace
}  // namespace quillon
