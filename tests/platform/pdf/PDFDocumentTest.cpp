#include "platform/pdf/DocumentAttributes.h"
#include "platform/pdf/DrawingContext.h"
#include "platform/pdf/PDFDocument.h"
#include "platform/pdf/PDFOutline.h"
#include "platform/pdf/WriteOptions.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RawPdf.h"
#include "tests/support/TempDir.h"

#include <QJsonArray>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>

namespace quillon {
namespace {

using test::PdfFixture;
using test::RawPdf;
using Strings = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

class PDFDocumentTest : public testing::Test {
protected:
    QUrl url(std::string_view name) const { return QUrl::fromLocalFile(QString::fromStdString(dir.file(name))); }

    std::shared_ptr<PDFDocument> open(const std::string& bytes, std::string_view name = "in.pdf") const {
        dir.write(name, bytes);
        return PDFDocument::initWithURL(url(name));
    }

    /// Writes the document, expects qpdf to find nothing wrong, and returns the path.
    std::string write(PDFDocument& document, const QVariantMap& options = {{kWriteWithoutSync, true}}) const {
        EXPECT_TRUE(document.writeToURL(url("out.pdf"), options));
        EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf")), "");
        return dir.file("out.pdf");
    }

    Strings marks(PDFDocument& document) const { return test::pageMarks(write(document)); }

    const test::TempDir dir;
};

TEST_F(PDFDocumentTest, AFileIsOpened) {
    const auto document = open(PdfFixture("A", 3).bytes());
    ASSERT_TRUE(document);
    EXPECT_EQ(document->pageCount(), 3);
    EXPECT_FALSE(document->isEncrypted());
    EXPECT_FALSE(document->isLocked());
    EXPECT_TRUE(document->warnings().empty());
}

TEST_F(PDFDocumentTest, WhatIsNoPdfOrNoLocalFileIsRefused) {
    EXPECT_FALSE(open("hello"));
    EXPECT_FALSE(PDFDocument::initWithURL(url("missing.pdf")));
    EXPECT_FALSE(PDFDocument::initWithURL(QUrl()));
    EXPECT_FALSE(PDFDocument::initWithURL(QUrl(QStringLiteral("http://localhost/in.pdf"))));
}

TEST_F(PDFDocumentTest, FileNamesMayHoldAnyCharacters) {
    const auto document = open(PdfFixture("A", 1).bytes(), "\xc3\xa4 \xe4\xb8\xad %41#?.pdf");
    ASSERT_TRUE(document);
    EXPECT_EQ(marks(*document), Strings{"A1"});
}

TEST_F(PDFDocumentTest, ALookupOutsideGivesNoPage) {
    const auto document = open(PdfFixture("A", 2).bytes());
    EXPECT_TRUE(document->pageAtIndex(0));
    EXPECT_TRUE(document->pageAtIndex(1));
    EXPECT_FALSE(document->pageAtIndex(2));
    EXPECT_FALSE(document->pageAtIndex(-1));
}

TEST_F(PDFDocumentTest, TheSamePageObjectIsGivenAtEveryCall) {
    const auto document = open(PdfFixture("A", 2).bytes());
    EXPECT_EQ(document->pageAtIndex(1), document->pageAtIndex(1));
    EXPECT_NE(document->pageAtIndex(0), document->pageAtIndex(1));
}

TEST_F(PDFDocumentTest, InsertingNoPageDoesNothing) {
    const auto document = open(PdfFixture("A", 2).bytes());
    document->insertPage(nullptr, 1);
    EXPECT_EQ(document->pageCount(), 2);
}

TEST_F(PDFDocumentTest, PagesAreInsertedInFrontOfTheIndexAndAtTheEndsOutsideOfThem) {
    const auto a = open(PdfFixture("A", 2).bytes(), "a.pdf");
    const auto b = open(PdfFixture("B", 4).bytes(), "b.pdf");
    a->insertPage(b->pageAtIndex(0), 1);
    a->insertPage(b->pageAtIndex(1), 99);
    a->insertPage(b->pageAtIndex(2), -7);
    a->insertPage(b->pageAtIndex(3), a->pageCount());
    EXPECT_EQ(marks(*a), (Strings{"B3", "A1", "B1", "A2", "B2", "B4"}));
    EXPECT_EQ(b->pageCount(), 4) << "the other document keeps its pages";
}

TEST_F(PDFDocumentTest, PagesAreRemoved) {
    const auto document = open(PdfFixture("A", 4).bytes());
    document->removePageAtIndex(1);
    document->removePageAtIndex(7);
    document->removePageAtIndex(-1);
    EXPECT_EQ(marks(*document), (Strings{"A1", "A3", "A4"}));
}

TEST_F(PDFDocumentTest, PagesAreExchanged) {
    const auto document = open(PdfFixture("A", 4).bytes());
    document->exchangePageAtIndex(0, 3);
    document->exchangePageAtIndex(1, 1);
    document->exchangePageAtIndex(1, 4);
    document->exchangePageAtIndex(-1, 1);
    EXPECT_EQ(marks(*document), (Strings{"A4", "A2", "A3", "A1"}));
}

TEST_F(PDFDocumentTest, TheIndexOfAPageIsItsFirstPlace) {
    const auto document = open(PdfFixture("A", 3).bytes());
    const auto other = open(PdfFixture("B", 1).bytes(), "b.pdf");
    const auto last = document->pageAtIndex(2);
    EXPECT_EQ(document->indexForPage(last), 2);
    document->insertPage(last, 1);
    EXPECT_EQ(document->indexForPage(last), 1);
    EXPECT_EQ(document->indexForPage(other->pageAtIndex(0)), -1);
    EXPECT_EQ(document->indexForPage(nullptr), -1);
}

TEST_F(PDFDocumentTest, PagesOutliveTheDocumentThatTheyWereTakenFrom) {
    PDFDocument document;
    document.insertPage(open(PdfFixture("A", 2).bytes())->pageAtIndex(1), 0);
    EXPECT_EQ(marks(document), Strings{"A2"});
}

TEST_F(PDFDocumentTest, ABlankPageLooksLikeThePageBeforeIt) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one", "/Parent 2 0 R/MediaBox[10 20 310 420]/Rotate 90");
    const auto document = open(pdf.table().bytes());
    document->insertPage(std::make_shared<PDFPage>(), 0);
    document->insertPage(std::make_shared<PDFPage>(), 2);
    document->insertPage(std::make_shared<PDFPage>(), 3);
    const test::JudgedPdf out(write(*document));
    const auto boxOf = [&](qsizetype page) {
        return out.dictionary(out.pages()[page])[QStringLiteral("/MediaBox")].toArray();
    };
    const auto rotationOf = [&](qsizetype page) {
        return out.dictionary(out.pages()[page])[QStringLiteral("/Rotate")].toInt();
    };
    EXPECT_EQ(boxOf(0), (QJsonArray{0, 0, 612, 792})) << "none stands before it";
    EXPECT_EQ(rotationOf(0), 0);
    for (const qsizetype page : {1, 2, 3}) {
        EXPECT_EQ(boxOf(page), (QJsonArray{10, 20, 310, 420})) << page;
        EXPECT_EQ(rotationOf(page), 90) << page;
    }
}

TEST_F(PDFDocumentTest, BoxesAndRotationAreThoseOfTheFile) {
    RawPdf pdf;
    pdf.catalogOf({3, 5})
        .page(3, "one", "/MediaBox[10 20 310 420]/CropBox[20 30 120 230]/Rotate -90")
        .page(5, "two", "/X 1");
    const auto document = open(pdf.table().bytes());
    const auto page = document->pageAtIndex(0);
    EXPECT_EQ(page->boundsForBox(PDFDisplayBox::MediaBox), QRectF(10, 20, 300, 400));
    EXPECT_EQ(page->boundsForBox(PDFDisplayBox::CropBox), QRectF(20, 30, 100, 200));
    EXPECT_EQ(page->rotation(), 270);
    EXPECT_EQ(document->pageAtIndex(1)->boundsForBox(PDFDisplayBox::MediaBox), QRectF(0, 0, 612, 792));
    EXPECT_EQ(document->pageAtIndex(1)->boundsForBox(PDFDisplayBox::CropBox), QRectF(0, 0, 612, 792));
    EXPECT_EQ(PDFPage().boundsForBox(PDFDisplayBox::MediaBox), QRectF(0, 0, 612, 792));
}

std::vector<const PDFPage*> drawn;

/// Writes down each drawing, and leaves the content of every second page behind.
class NotedPage : public PDFPage {
public:
    void drawWithBox(PDFDisplayBox box) override {
        EXPECT_EQ(box, PDFDisplayBox::MediaBox);
        EXPECT_NE(DrawingContext::current(), nullptr);
        drawn.push_back(this);
        if (drawn.size() % 2 == 1) PDFPage::drawWithBox(box);
    }
};

class NotedDocument : public PDFDocument {
public:
    explicit NotedDocument(const QUrl& url) { EXPECT_TRUE(open(url)); }
    [[nodiscard]] PageFactory pageClass() const override {
        return []() -> std::shared_ptr<PDFPage> { return std::make_shared<NotedPage>(); };
    }
};

TEST_F(PDFDocumentTest, EveryPageIsDrawnOnceInOrderAndContentThatIsNotDrawnStaysBehind) {
    dir.write("in.pdf", PdfFixture("A", 5).bytes());
    NotedDocument document(url("in.pdf"));
    document.exchangePageAtIndex(0, 4);
    document.insertPage(document.pageAtIndex(2), 5);
    drawn.clear();
    EXPECT_EQ(marks(document), (Strings{"A5", "", "A3", "", "A1", ""}));
    ASSERT_EQ(drawn.size(), 6U);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(drawn[static_cast<std::size_t>(i)], document.pageAtIndex(i).get());
    EXPECT_EQ(DrawingContext::current(), nullptr);
}

TEST_F(PDFDocumentTest, AttributesAreThoseOfTheFile) {
    const auto document = open(PdfFixture("A", 1)
                                   .info("Title", "T")
                                   .info("Author", "Me")
                                   .info("Keywords", "one, two")
                                   .info("Custom", "x")
                                   .bytes());
    const QVariantMap attributes = document->documentAttributes();
    EXPECT_EQ(attributes.size(), 3);
    EXPECT_EQ(attributes[PDFDocumentTitleAttribute].toString(), QStringLiteral("T"));
    EXPECT_EQ(attributes[PDFDocumentAuthorAttribute].toString(), QStringLiteral("Me"));
    EXPECT_EQ(attributes[PDFDocumentKeywordsAttribute].typeId(), QMetaType::QStringList);
    EXPECT_EQ(attributes[PDFDocumentKeywordsAttribute].toStringList(), QStringList{QStringLiteral("one, two")});
    EXPECT_FALSE(attributes.contains(PDFDocumentSubjectAttribute));
    EXPECT_FALSE(attributes.contains(PDFDocumentCreatorAttribute));
}

TEST_F(PDFDocumentTest, AttributesThatAreNoTextsOrReferencesAreHandled) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one").object(9, "<</Title 10 0 R/Author 7/Subject<FEFF4E2D>>>").object(10, "(T)");
    const QVariantMap attributes = open(pdf.table("/Root 1 0 R/Info 9 0 R").bytes())->documentAttributes();
    EXPECT_EQ(attributes.size(), 2);
    EXPECT_EQ(attributes[PDFDocumentTitleAttribute].toString(), QStringLiteral("T"));
    EXPECT_EQ(attributes[PDFDocumentSubjectAttribute].toString(), QStringLiteral("\u4e2d"));
}

TEST_F(PDFDocumentTest, AnEmptyDocumentHasNoAttributesAndIsNotWritten) {
    PDFDocument document;
    EXPECT_TRUE(document.documentAttributes().isEmpty());
    EXPECT_EQ(document.pageCount(), 0);
    EXPECT_FALSE(document.writeToURL(url("out.pdf"), {}));
    EXPECT_FALSE(std::filesystem::exists(dir.file("out.pdf")));
    EXPECT_FALSE(document.warnings().empty());
}

TEST_F(PDFDocumentTest, WriteOptionsReplaceInformation) {
    const auto document =
        open(PdfFixture("A", 1).info("Title", "Old").info("Author", "Old").info("Subject", "Kept").bytes());
    const std::string path = write(*document, {{kCGPDFContextTitle, QStringLiteral("Neu \u4e2d")},
                                               {kCGPDFContextAuthor, QStringLiteral("")},
                                               {kCGPDFContextKeywords, QStringLiteral("k, l")},
                                               {kCGPDFContextCreator, QStringLiteral("C")}});
    EXPECT_EQ(test::documentInfo(path, "Title"), "Neu \u4e2d");
    EXPECT_EQ(test::documentInfo(path, "Author"), "");
    EXPECT_EQ(test::documentInfo(path, "Subject"), "Kept");
    EXPECT_EQ(test::documentInfo(path, "Keywords"), "k, l");
    EXPECT_EQ(test::documentInfo(path, "Creator"), "C");
}

TEST_F(PDFDocumentTest, TheOutlineOfTheFileIsKeptUntilItIsReplaced) {
    const auto document = open(PdfFixture("A", 2).bookmark("b", 1).bytes());
    EXPECT_EQ(test::outlineLines(write(*document)).size(), 1U);
    document->setOutlineRoot(nullptr);
    EXPECT_TRUE(test::outlineLines(write(*document)).empty());
}

TEST_F(PDFDocumentTest, ATargetThatCannotBeWrittenIsReported) {
    const auto document = open(PdfFixture("A", 1).bytes());
    EXPECT_FALSE(document->writeToURL(url("missing/out.pdf"), {}));
    EXPECT_FALSE(document->warnings().empty());
    EXPECT_FALSE(document->writeToURL(QUrl(), {}));
    EXPECT_FALSE(document->writeToURL(QUrl(QStringLiteral("http://localhost/out.pdf")), {}));
    (void)write(*document);
    EXPECT_TRUE(document->warnings().empty()) << "those of the last write only";
}

TEST_F(PDFDocumentTest, ADocumentCanBeWrittenOverItsOwnFileAndAgain) {
    const auto document = open(PdfFixture("A", 3).bytes(), "out.pdf");
    document->removePageAtIndex(0);
    EXPECT_EQ(marks(*document), (Strings{"A2", "A3"}));
    EXPECT_EQ(PDFDocument::initWithURL(url("out.pdf"))->pageCount(), 2);
}

/// A document of a hundred thousand pages is edited in well under a second.
class LongDocument : public PDFDocumentTest {
protected:
    static constexpr int count = 100'000;

    LongDocument() {
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
        std::string kids;
        for (int i = 0; i < count; ++i) {
            pdf.object(10 + i, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>");
            kids += std::to_string(10 + i) + " 0 R ";
        }
        pdf.object(2, "<</Type/Pages/Count 100000/Kids[" + kids + "]>>");
        document = open(pdf.table().bytes(), "long.pdf");
        for (int i = 0; i < count; ++i) pages.push_back(document->pageAtIndex(i));
        begin = Clock::now();
    }

    void expectQuick() const { EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1)); }

    std::shared_ptr<PDFDocument> document;
    std::vector<std::shared_ptr<PDFPage>> pages;
    Clock::time_point begin;
};

TEST_F(LongDocument, EverySecondPageIsRemoved) {
    for (std::size_t i = 1; i < count; i += 2) document->removePageAtIndex(document->indexForPage(pages[i]));
    expectQuick();
    ASSERT_EQ(document->pageCount(), count / 2);
    for (const int i : {0, 1, 777, count / 2 - 1})
        EXPECT_EQ(document->pageAtIndex(i), pages[static_cast<std::size_t>(2 * i)]);
}

TEST_F(LongDocument, ThePagesAreReversed) {
    for (int i = 0; i < count / 2; ++i) document->exchangePageAtIndex(i, count - 1 - i);
    expectQuick();
    for (const int i : {0, 1, 777, count - 1})
        EXPECT_EQ(document->pageAtIndex(i), pages[static_cast<std::size_t>(count - 1 - i)]);
}

TEST_F(LongDocument, APageIsInsertedBehindEachOther) {
    const auto page = std::make_shared<PDFPage>();
    for (int i = 0; i < count; ++i) document->insertPage(page, 2 * i + 1);
    expectQuick();
    ASSERT_EQ(document->pageCount(), 2 * count);
    for (const int i : {0, 777, count - 1}) {
        EXPECT_EQ(document->pageAtIndex(2 * i), pages[static_cast<std::size_t>(i)]);
        EXPECT_EQ(document->pageAtIndex(2 * i + 1), page);
    }
}

TEST_F(LongDocument, PagesAreAppendedToAnother) {
    PDFDocument other;
    for (const auto& page : pages) other.insertPage(page, other.pageCount());
    for (const auto& page : pages) other.insertPage(page, 0);
    expectQuick();
    EXPECT_EQ(other.pageCount(), 2 * count);
    EXPECT_EQ(other.pageAtIndex(0), pages.back());
    EXPECT_EQ(other.pageAtIndex(2 * count - 1), pages.back());
}

TEST_F(LongDocument, OtherReadersOpenItAtAnyLength) {
    PDFDocument other;
    for (const int length : {9'000, 20'000, 28'888, 40'846, count}) {
        while (other.pageCount() < length)
            other.insertPage(pages[static_cast<std::size_t>(other.pageCount())], other.pageCount());
        ASSERT_TRUE(other.writeToURL(url("out.pdf"), {{kWriteWithoutSync, true}}));
        EXPECT_EQ(test::pageCount(dir.file("out.pdf")), length);
    }
}

}  // namespace
}  // namespace quillon
