#include "pdf/read/FileScanner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RawPdf.h"

#include <chrono>
#include <random>

namespace quillon::pdf {
namespace {

using test::RawPdf;
using Clock = std::chrono::steady_clock;

/// Files that can only be read by scanning them.
class Recovery : public EngineTest {
protected:
    void expectRecovered(const std::string& bytes, const Strings& expected) const {
        EXPECT_EQ(marks(bytes), expected);
        const auto source = open(bytes);
        ASSERT_TRUE(source);
        ASSERT_FALSE(source->warnings().empty());
        EXPECT_TRUE(source->warnings()[0].starts_with(dir.file("in.pdf"))) << source->warnings()[0];
    }
};

RawPdf twoPages() {
    return RawPdf().catalogOf({3, 5}).page(3, "one").page(5, "two");
}

TEST_F(Recovery, AFileWithoutAnyTableIsRead) {
    expectRecovered(twoPages().bytes(), {"one", "two"});
    expectRecovered(twoPages().raw("trailer<</Root 1 0 R>>").bytes(), {"one", "two"});
}

TEST_F(Recovery, AWrongStartIsPutRight) {
    std::string bytes = twoPages().table().bytes();
    bytes.replace(bytes.rfind("startxref"), std::string::npos, "startxref\n12\n%%EOF");
    expectRecovered(bytes, {"one", "two"});
    bytes.replace(bytes.rfind("startxref"), std::string::npos, "startxref\n999999999\n%%EOF");
    expectRecovered(bytes, {"one", "two"});
    bytes.replace(bytes.rfind("startxref"), std::string::npos, "");
    expectRecovered(bytes, {"one", "two"});
}

TEST_F(Recovery, OffsetsThatAreOffByOneArePutRight) {
    for (const std::size_t shift : {std::size_t{1}, std::size_t{3}}) {
        RawPdf pdf = twoPages();
        for (int number = 1; number <= 6; ++number) {
            pdf.entry(number, pdf.bytes().find("\n" + std::to_string(number) + " 0 obj") + 1 + shift);
        }
        expectRecovered(pdf.table().bytes(), {"one", "two"});
    }
}

TEST_F(Recovery, AnEntryThatLeadsToAnotherObjectIsPutRight) {
    RawPdf pdf = twoPages();
    pdf.entry(5, pdf.bytes().find("\n3 0 obj") + 1);
    const std::string bytes = pdf.table().bytes();
    EXPECT_EQ(marks(bytes), (Strings{"one", "two"}));
}

TEST_F(Recovery, TheWarningNamesTheObjectAndTheOffsetThatWasWrong) {
    RawPdf pdf = twoPages();
    pdf.entry(1, 77);
    const auto source = open(pdf.table().bytes());
    ASSERT_TRUE(source);
    ASSERT_EQ(source->warnings().size(), 1U);
    EXPECT_TRUE(source->warnings()[0].starts_with(dir.file("in.pdf") + ", object 1, offset 77: "))
        << source->warnings()[0];
}

TEST_F(Recovery, OfSeveralObjectsWithOneNumberTheLastHolds) {
    expectRecovered(twoPages().stream(4, {}, RawPdf::content("newer")).bytes(), {"newer", "two"});
}

TEST_F(Recovery, WhatLooksLikeAnObjectInsideAStreamIsNone) {
    RawPdf pdf = twoPages();
    pdf.stream(7, {}, "\n4 0 obj\n<</Length 5>>stream\nwrong\nendstream\nendobj\n1 0 obj<</Type/Catalog>>endobj\n");
    expectRecovered(pdf.bytes(), {"one", "two"});
}

TEST_F(Recovery, ObjectStreamsAreOpened) {
    RawPdf pdf;
    pdf.packed(9, {{1, "<</Type/Catalog/Pages 2 0 R>>"}, {2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}});
    expectRecovered(pdf.page(3, "one").bytes(), {"one"});
}

TEST_F(Recovery, AnObjectBehindTheObjectStreamThatHoldsAnOlderOneIsNewer) {
    RawPdf pdf;
    pdf.packed(9, {{1, "<</Type/Catalog/Pages 2 0 R>>"}, {2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}});
    pdf.page(3, "one").page(5, "two").object(2, "<</Type/Pages/Count 1/Kids[5 0 R]>>");
    expectRecovered(pdf.bytes(), {"two"});
}

TEST_F(Recovery, WithoutAPageTreeThePagesAreCollected) {
    RawPdf pdf;
    pdf.page(5, "two").page(3, "one");
    expectRecovered(pdf.bytes(), {"one", "two"});
    expectRecovered(RawPdf().object(1, "<</Type/Catalog/Pages 99 0 R>>").page(3, "one").table().bytes(), {"one"});
}

TEST_F(Recovery, WhatIsNoPdfIsRefused) {
    for (const std::string_view bytes :
         {std::string_view(), std::string_view("hello"), std::string_view("%PDF-1.4\n"),
          std::string_view("\0\0\0\0", 4), std::string_view("%PDF-1.7\n1 0 obj<</Type/Catalog>>endobj")}) {
        EXPECT_FALSE(open(bytes));
    }
}

TEST_F(Recovery, KeywordsAcrossTheBordersOfBlocksAreSeen) {
    // Every place of the header of an object relative to the border between two blocks comes up once.
    for (std::size_t shift = 0; shift < 24; ++shift) {
        RawPdf pdf = RawPdf().catalogOf({3}).page(3, "one");
        const std::size_t filler = BlockCache::blockSize - pdf.size() % BlockCache::blockSize - 12 + shift;
        pdf.raw(std::string(filler, ' ')).stream(4, {}, RawPdf::content("last"));
        ASSERT_EQ(marks(pdf.bytes()), Strings{"last"}) << shift;
    }
}

TEST_F(Recovery, AFileWithAHundredThousandObjectsIsScannedQuickly) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one");
    for (int number = 5; number < 100'000; ++number) pdf.object(number, "<</A/B>>");
    const auto begin = Clock::now();
    const auto source = open(pdf.bytes());
    ASSERT_TRUE(source);
    EXPECT_EQ(source->pageCount(), 1U);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(Recovery, AFileWithThousandsOfStreamsWithoutLengthIsScannedQuickly) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one");
    for (int number = 5; number < 20'000; ++number) pdf.object(number, "<<>>stream\nabc\nendstream");
    const auto begin = Clock::now();
    const auto source = open(pdf.bytes());
    ASSERT_TRUE(source);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
}

/// Files of several kinds, to be damaged.
std::vector<std::string> samples() {
    std::vector<std::string> files;
    files.push_back(test::PdfFixture("A", 2).link(0, 1).bookmark("b", 1).info("Title", "T").bytes());
    files.push_back(twoPages().crossStream(9).bytes());
    RawPdf packed;
    packed.packed(9, {{1, "<</Type/Catalog/Pages 2 0 R>>"}, {2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}});
    files.push_back(packed.page(3, "one").hybrid(10).bytes());
    files.push_back(twoPages().table().stream(4, {}, RawPdf::content("new")).freed(5).table().bytes());
    return files;
}

/// Opens and writes whatever the file gives; that it comes back at all is what is tested.
void survive(const std::string& path, const std::string& target) {
    const auto source = Source::open(path);
    if (!source || source->pageCount() == 0) return;
    DocumentPlan plan;
    plan.sync = false;
    plan.base = source;
    for (std::uint32_t i = 0; i < source->pageCount() && i < 10; ++i) {
        OutputPage page;
        page.origin = SourcePage{source, i, 1};
        plan.pages.push_back(page);
        plan.pages.push_back(page);  // the second copy goes another way through the writer
    }
    (void)writeDocument(plan, target);
}

TEST_F(Recovery, TruncationAtEveryByteIsSurvived) {
    const auto begin = Clock::now();
    for (const std::string& file : samples()) {
        for (std::size_t length = 0; length < file.size(); ++length) {
            survive(dir.write("in.pdf", std::string_view(file).substr(0, length)), dir.file("out.pdf"));
        }
    }
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(120));
}

TEST_F(Recovery, AFileThatLostItsEndKeepsThePagesThatAreThere) {
    const std::string whole = test::PdfFixture("A", 5).bytes();
    const std::size_t cut = whole.find("(A3)");
    EXPECT_EQ(marks(whole.substr(0, cut)).size(), 3U);
    EXPECT_EQ(marks(whole.substr(0, whole.find("xref\n"))), (Strings{"A1", "A2", "A3", "A4", "A5"}));
}

TEST_F(Recovery, DamagedBytesAreSurvived) {
    std::mt19937 random(53);
    const auto begin = Clock::now();
    const auto files = samples();
    for (int round = 0; round < 2000; ++round) {
        std::string file = files[random() % files.size()];
        for (auto n = random() % 3 + 1; n > 0; --n) {
            char& c = file[random() % file.size()];
            c = random() % 2 == 0 ? static_cast<char>(random()) : "0123456789[]<>()/R %\n"[random() % 21];
        }
        survive(dir.write("in.pdf", file), dir.file("out.pdf"));
    }
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(120));
}

}  // namespace
}  // namespace quillon::pdf
