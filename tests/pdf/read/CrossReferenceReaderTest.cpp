#include "pdf/filter/Flate.h"
#include "pdf/read/CrossReferenceReader.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/PredictedUp.h"
#include "tests/support/RawPdf.h"

#include <chrono>

namespace quillon::pdf {
namespace {

using test::RawPdf;

/// Files whose cross-reference data is sound: none may be scanned.
class CrossReferences : public EngineTest {
protected:
    void expectMarks(const std::string& bytes, const Strings& expected) const {
        EXPECT_EQ(marks(bytes), expected);
        const auto source = open(bytes);
        ASSERT_TRUE(source);
        EXPECT_EQ(source->warnings(), Strings());
    }
};

std::string twoPages(std::string_view lineEnd) {
    return RawPdf().catalogOf({3, 50}).page(3, "one").page(50, "two").table("/Root 1 0 R", lineEnd).bytes();
}

TEST_F(CrossReferences, ATableWithSeveralSubsectionsIsRead) {
    expectMarks(twoPages(" \n"), {"one", "two"});
}

TEST_F(CrossReferences, ATableWithAnyLineEndsIsRead) {
    for (const std::string_view lineEnd : {"\r\n", "\n", "\r", " \r\n", "  \n"})
        expectMarks(twoPages(lineEnd), {"one", "two"});
}

TEST_F(CrossReferences, ATableWithFewerEntriesThanAnnouncedIsRead) {
    std::string bytes = RawPdf().catalogOf({3}).page(3, "one").table().bytes();
    const std::size_t at = bytes.find("0 5\n", bytes.find("xref\n"));
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, 3, "0 9");
    expectMarks(bytes, {"one"});
}

TEST_F(CrossReferences, AStreamIsRead) {
    expectMarks(RawPdf().catalogOf({3}).page(3, "one").crossStream(9).bytes(), {"one"});
}

/// The rows of a table for objects 1 to 4 of a file that begins with them.
struct Places {
    RawPdf pdf = RawPdf().catalogOf({3});
    std::vector<std::size_t> offsets;
    Places() {
        const std::string& bytes = pdf.page(3, "one").bytes();
        for (int number = 1; number <= 4; ++number)
            offsets.push_back(bytes.find("\n" + std::to_string(number) + " 0 obj") + 1);
    }
};

TEST_F(CrossReferences, AStreamWithoutTypesAndGenerationsIsRead) {
    Places places;
    std::string rows;
    for (const std::size_t offset : places.offsets) rows += RawPdf::bigEndian(offset, 3);
    const std::size_t start = places.pdf.size();
    places.pdf.stream(9, "/Type/XRef/Root 1 0 R/Size 10/W[0 3 0]/Index[1 4]", rows);
    expectMarks(places.pdf.raw("startxref\n" + std::to_string(start) + "\n%%EOF").bytes(), {"one"});
}

TEST_F(CrossReferences, AStreamWithAPredictorAndWideFieldsIsRead) {
    Places places;
    std::string rows = std::string(14, '\0');
    for (const std::size_t offset : places.offsets)
        rows += RawPdf::bigEndian(1, 2) + RawPdf::bigEndian(offset, 8) + RawPdf::bigEndian(0, 4);
    std::string data;
    Deflater(6).deflate(predictedUp(rows, 14), data);
    const std::size_t start = places.pdf.size();
    places.pdf.stream(9,
                      "/Type/XRef/Root 1 0 R/Size 5/W[2 8 4]/Filter/FlateDecode"
                      "/DecodeParms<</Predictor 12/Columns 14>>",
                      data);
    expectMarks(places.pdf.raw("startxref\n" + std::to_string(start) + "\n%%EOF").bytes(), {"one"});
}

TEST_F(CrossReferences, AHybridFileShowsWhatItsTableHides) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").stream(4, {}, RawPdf::content("one"));
    pdf.packed(5, {{2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"},
                   {3, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents 4 0 R" + RawPdf::font() + ">>"}});
    expectMarks(pdf.hybrid(6).bytes(), {"one"});
}

TEST_F(CrossReferences, ANewerSectionOverridesAnOlderHybrid) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").page(3, "one").page(7, "two");
    pdf.packed(5, {{2, "<</Type/Pages/Count 1/Kids[3 0 R]>>"}}).hybrid(6);
    pdf.object(2, "<</Type/Pages/Count 1/Kids[7 0 R]>>").table();
    expectMarks(pdf.bytes(), {"two"});
}

TEST_F(CrossReferences, TheNewestObjectOfManyUpdatesHolds) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "v0").table();
    for (int i = 1; i <= 20; ++i) {
        pdf.stream(4, {}, RawPdf::content("v" + std::to_string(i)));
        if (i % 2 == 0) {
            pdf.table();
        } else {
            pdf.crossStream(100 + i);
        }
    }
    expectMarks(pdf.bytes(), {"v20"});
}

TEST_F(CrossReferences, AnObjectFreedByAnUpdateIsNull) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one").table().freed(4).table();
    expectMarks(pdf.bytes(), {""});
}

TEST_F(CrossReferences, AReferenceWithAnotherGenerationIsNull) {
    const std::string page = "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents 4 1 R" + RawPdf::font() + ">>";
    const std::string content = "<</Length 60>>stream\n" + RawPdf::content("one") +
                                std::string(60 - RawPdf::content("one").size(), ' ') + "\nendstream";
    expectMarks(RawPdf().catalogOf({3}).object(3, page).object(4, content, 0).table().bytes(), {""});
    expectMarks(RawPdf().catalogOf({3}).object(3, page).object(4, content, 1).table().bytes(), {"one"});
}

TEST_F(CrossReferences, AFileThatBeginsWithJunkAndCountsFromTheHeaderIsRead) {
    RawPdf pdf("");
    pdf.raw("junk before\r\n").countOffsetsFrom(pdf.size());
    pdf.raw("%PDF-1.5\n").catalogOf({3}).page(3, "one").table();
    expectMarks(pdf.bytes(), {"one"});
    RawPdf stream("");
    stream.raw("junk before\r\n").countOffsetsFrom(stream.size());
    stream.raw("%PDF-1.5\n").catalogOf({3}).page(3, "one").crossStream(9);
    expectMarks(stream.bytes(), {"one"});
}

TEST_F(CrossReferences, AFileThatBeginsWithJunkAndCountsFromItsFirstByteIsRead) {
    expectMarks(RawPdf("junk before\r\n%PDF-1.5\n").catalogOf({3}).page(3, "one").table().bytes(), {"one"});
}

TEST_F(CrossReferences, SectionsThatLeadBackToEachOtherEnd) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one");
    const std::string own = std::to_string(pdf.size());
    expectMarks(pdf.table("/Root 1 0 R/Prev " + own).bytes(), {"one"});
}

TEST_F(CrossReferences, ASizeOfTwoThousandMillionCostsNothing) {
    std::string bytes = RawPdf().catalogOf({3}).page(3, "one").table("/Root 1 0 R/Size 2000000000").bytes();
    expectMarks(bytes, {"one"});
    bytes = RawPdf().catalogOf({3}).page(3, "one").crossStream(9, "/Root 1 0 R/Size 2000000000").bytes();
    expectMarks(bytes, {"one"});
}

TEST_F(CrossReferences, HugeObjectNumbersCostLittle) {
    const std::string bytes = RawPdf().catalogOf({2'000'000'000}).page(2'000'000'000, "one").table().bytes();
    const auto file = InputFile::open(dir.write("huge.pdf", bytes));
    BlockCache cache(file);
    const auto table = CrossReferenceReader(cache, 0).read();
    ASSERT_TRUE(table);
    EXPECT_LT(table->entries.memory(), 1'000'000U);
    expectMarks(bytes, {"one"});
}

TEST_F(CrossReferences, TheTrailerIsCompletedByOlderOnes) {
    const std::string bytes =
        RawPdf().catalogOf({3}).page(3, "one").table("/Root 1 0 R/Info 4 0 R").stream(4, {}, "x").table("").bytes();
    const auto file = InputFile::open(dir.write("a.pdf", bytes));
    BlockCache cache(file);
    const auto table = CrossReferenceReader(cache, 0).read();
    ASSERT_TRUE(table);
    EXPECT_TRUE(table->trailer["Root"].reference());
    EXPECT_TRUE(table->trailer["Info"].reference());
}

TEST_F(CrossReferences, DamagedSectionsAreRefused) {
    const std::string good = RawPdf().catalogOf({3}).page(3, "one").table().bytes();
    const auto readable = [this](const std::string& bytes) {
        const auto file = InputFile::open(dir.write("a.pdf", bytes));
        BlockCache cache(file);
        return CrossReferenceReader(cache, 0).read().has_value();
    };
    const auto with = [&good](std::string_view old, std::string_view replacement) {
        std::string bytes = good;
        return bytes.replace(bytes.rfind(old), old.size(), replacement);
    };
    EXPECT_TRUE(readable(good));
    EXPECT_FALSE(readable(with("startxref", "startyref")));
    EXPECT_FALSE(readable(with("startxref\n", "startxref\n9")));
    EXPECT_FALSE(readable(with("trailer", "trader!")));
    EXPECT_FALSE(readable(with("0 5", "0 4000000000")));
    EXPECT_FALSE(readable(with("/Root 1 0 R", "/Prev 3")));
    EXPECT_FALSE(readable(with("/Root 1 0 R", "/XRefStm 3")));
    EXPECT_FALSE(readable(""));
}

class CrossReferenceRows : public EngineTest {
protected:
    /// A table of objects 0 to 4, of which that of object 3 has the row `row`.
    [[nodiscard]] std::optional<CrossReferenceTable> tableWith(std::string_view row) const {
        const std::string bytes =
            "%PDF-1.4\nxref\n0 5\n0000000000 65535 f \n0000000017 00000 n \n0000000018 00000 n \n" + std::string(row) +
            "\n0000000019 00000 n \ntrailer<</Size 5>>\nstartxref 9\n%%EOF";
        const auto file = InputFile::open(dir.write("a.pdf", bytes));
        BlockCache cache(file);
        auto table = CrossReferenceReader(cache, 0).read();
        EXPECT_TRUE(!table || table->entries.get(4).place == 19) << row;
        return table;
    }
};

TEST_F(CrossReferenceRows, HaveAPlaceAGenerationAndAKindInAnyWidth) {
    using enum CrossReferenceEntry::Kind;
    const auto expect = [this](std::string_view row, CrossReferenceEntry::Kind kind, std::uint64_t place,
                               std::uint64_t generation) {
        const auto table = tableWith(row);
        ASSERT_TRUE(table) << row;
        const CrossReferenceEntry entry = table->entries.get(3);
        EXPECT_EQ(entry.kind, kind) << row;
        EXPECT_EQ(entry.place, place) << row;
        EXPECT_EQ(entry.detail, generation) << row;
    };
    expect("1234567890 00000 n ", InFile, 1'234'567'890, 0);
    expect("9876543210 00000 n ", InFile, 9'876'543'210, 0);
    expect("0000000001 00000 n", InFile, 1, 0);
    expect("0000000000 00000 n ", Free, 0, 0);
    expect("0000000123 00007 n ", InFile, 123, 7);
    expect("0000000123 00007 f ", Free, 123, 7);
    expect("0000000123 00000 f ", Free, 123, 0);
    expect("123 0 n", InFile, 123, 0);
    expect("00000000123 00000 n", InFile, 123, 0);
    expect("12345678901 00000 n", InFile, 12'345'678'901, 0);
    expect("0000000123  00000  n", InFile, 123, 0);
}

TEST_F(CrossReferenceRows, WithAnythingButDigitsForAPlaceAreRefused) {
    for (std::size_t at = 0; at < 10; ++at) {
        for (const char wrong : {'/', ':', 'p', '\xb5'}) {
            std::string row = "1234567890 00000 n ";
            row[at] = wrong;
            EXPECT_FALSE(tableWith(row)) << row;
        }
    }
}

TEST(CrossReferenceEntries, ThatAreBeyondAllFilesStayBeyondThem) {
    using enum CrossReferenceEntry::Kind;
    const CrossReferenceEntry usual(InFile, 70'000'000'000'000, 65535);
    EXPECT_EQ(usual.place, 70'000'000'000'000U);
    EXPECT_EQ(usual.detail, 65535U);
    EXPECT_EQ(usual.kind, InFile);
    const CrossReferenceEntry odd(InObjectStream, UINT64_MAX, 65536);
    EXPECT_EQ(odd.place, CrossReferenceEntry::farthestPlace);
    EXPECT_EQ(odd.detail, 65535U);
    EXPECT_EQ(odd.kind, InObjectStream);
}

}  // namespace
}  // namespace quillon::pdf
