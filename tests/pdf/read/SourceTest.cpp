#include "pdf/read/Source.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RawPdf.h"

#include <filesystem>
#include <sys/stat.h>
#include <thread>

namespace quillon::pdf {
namespace {

using test::PdfFixture;
using test::RawPdf;

class SourceTest : public EngineTest {};

TEST_F(SourceTest, WhatIsNoReadableFileIsRefused) {
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(Source::open(dir.file("fifo")));
    EXPECT_FALSE(Source::open(dir.path().string()));
    EXPECT_FALSE(Source::open(dir.file("missing")));
    EXPECT_FALSE(Source::open("/dev/zero"));
    EXPECT_FALSE(Source::open(""));
}

TEST_F(SourceTest, AFileOpenedAgainIsTheSameSource) {
    const auto first = open(PdfFixture("A", 2).bytes());
    EXPECT_EQ(Source::open(dir.file("in.pdf")), first);
    std::filesystem::create_hard_link(dir.file("in.pdf"), dir.file("other.pdf"));
    EXPECT_EQ(Source::open(dir.file("other.pdf")), first);
}

TEST_F(SourceTest, AFileThatHasChangedIsAnotherSource) {
    const auto first = open(PdfFixture("A", 2).bytes());
    const auto second = open(PdfFixture("B", 3).bytes());
    EXPECT_NE(second, first);
    EXPECT_EQ(second->pageCount(), 3U);
    EXPECT_EQ(first->pageCount(), 2U);
}

TEST_F(SourceTest, ManyOpeningsFromSeveralThreadsGiveOneSource) {
    dir.write("in.pdf", PdfFixture("A", 20).bytes());
    std::vector<std::shared_ptr<Source>> opened(8);
    std::vector<std::thread> threads;
    for (auto& source : opened) threads.emplace_back([&] { source = Source::open(dir.file("in.pdf")); });
    for (auto& thread : threads) thread.join();
    for (const auto& source : opened) EXPECT_EQ(source, opened[0]);
}

TEST_F(SourceTest, TheStructureIsReadAgainWhenItWasDropped) {
    const auto source = open(PdfFixture("A", 3).bytes());
    SourceAccess(*source).release();
    SourceAccess access(*source);
    ASSERT_TRUE(access.document());
    EXPECT_EQ(access.document()->pages().pages().size(), 3U);
}

TEST_F(SourceTest, TheTextOfAPageIsThatOfTheObjectAsItIsFound) {
    RawPdf pdf;
    pdf.catalogOf({3, 5}).page(3, "one", "/Parent 2 0 R/MediaBox[0 0 100 100]").page(5, "two");
    // An object of the same number that no table knows, but a search of the file finds.
    const std::string other =
        "3 0 obj\n<</Type/Page/Parent 2 0 R/MediaBox[0 0 999 999]/Pad(" + std::string(1000, 'x') + ")>>\nendobj\n";
    pdf.raw(other).table();
    const auto source = open(pdf.bytes());
    SourceAccess access(*source);
    SourceDocument& document = *access.document();
    const auto& pages = document.pages().pages();
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_NE(document.pageText(pages[0]).find("100 100"), std::string::npos);
    EXPECT_EQ(document.pageText(pages[1]).find("100 100"), std::string::npos);
    EXPECT_NE(document.pageText(pages[0]).find("100 100"), std::string::npos);
    EXPECT_GE(document.textInMemory(), document.pageText(pages[0]).size());
    EXPECT_TRUE(document.reader().recover("the file was scanned for objects"));
    EXPECT_NE(document.pageText(pages[0]).find("999 999"), std::string::npos);
    document.trim();
    EXPECT_LE(document.textInMemory(), std::string().capacity());
    EXPECT_NE(document.pageText(pages[0]).find("999 999"), std::string::npos);
}

TEST_F(SourceTest, TheVersionIsTheHigherOfHeaderAndCatalog) {
    const auto versionOf = [this](const std::string& header, const std::string& entry) {
        RawPdf pdf(header);
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R" + entry + ">>").object(2, "<</Type/Pages/Count 0/Kids[]>>");
        return open(pdf.table().bytes())->version();
    };
    EXPECT_EQ(versionOf("%PDF-1.3\n", ""), 13);
    EXPECT_EQ(versionOf("%PDF-1.3\n", "/Version/1.6"), 16);
    EXPECT_EQ(versionOf("%PDF-1.7\n", "/Version/1.4"), 17);
    EXPECT_EQ(versionOf("%PDF-2.0\n", ""), 20);
    EXPECT_EQ(versionOf("%PDF-1.9\n", ""), 17) << "there is none";
    EXPECT_EQ(versionOf("%PDF-2.3\n", ""), 20) << "there is none";
    EXPECT_EQ(versionOf("%PDF-9.9\n", "/Version/x"), 10);
    EXPECT_EQ(versionOf("", ""), 10);
}

class Encryption : public EngineTest, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(EachKeyLength, Encryption, testing::Values("40", "128", "256"));

TEST_P(Encryption, AProtectedFileIsRecognised) {
    const std::string plain = dir.write("plain.pdf", PdfFixture("A", 2).bytes());
    QStringList arguments{QStringLiteral("--encrypt"), QStringLiteral("user"), QStringLiteral("owner"),
                          QString::fromLatin1(GetParam()), QStringLiteral("--")};
    if (GetParam() != std::string_view("256")) arguments.prepend(QStringLiteral("--allow-weak-crypto"));
    arguments << QString::fromStdString(plain) << QString::fromStdString(dir.file("locked.pdf"));
    const auto made = test::runProgram(QStringLiteral("qpdf"), arguments);
    ASSERT_EQ(made.exitCode, 0) << made.errors;
    const auto source = Source::open(dir.file("locked.pdf"));
    ASSERT_TRUE(source);
    EXPECT_TRUE(source->isEncrypted());
    EXPECT_FALSE(Source::open(plain)->isEncrypted());
}

}  // namespace
}  // namespace quillon::pdf
