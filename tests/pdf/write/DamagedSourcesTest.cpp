#include "pdf/filter/Flate.h"
#include "pdf/write/DocumentWriter.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RawPdf.h"

#include <QJsonArray>

#include <chrono>
#include <functional>
#include <string>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::RawPdf;

/// Files that are odd or hostile, and what becomes of them in the output.
class DamagedSources : public EngineTest {
protected:
    static QString text(const char* latin) { return QString::fromLatin1(latin); }

    /// Opens and writes; how long that took.
    double secondsFor(std::string_view bytes) const {
        const auto start = std::chrono::steady_clock::now();
        if (const auto source = open(bytes)) {
            static_cast<void>(writeDocument(planOf({source}), dir.file("out.pdf")));
        }
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
};

TEST_F(DamagedSources, AnObjectThatAScanFindsInAnotherVersionIsCopiedWhole) {
    // The scan begins when object 6 is looked for, after the old object 5 has been met.
    RawPdf pdf;
    pdf.catalogOf({10}).page(10, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]/PieceInfo 5 0 R/Foo 6 0 R");
    pdf.object(5, "<</A(old)>>").object(6, "<</B(six)>>");
    pdf.raw("5 0 obj\n<</A(new)/LongKey(this is a longer value)/Last 7 0 R>>\nendobj\n");
    pdf.raw("7 0 obj\n<</C(seven)>>\nendobj\n").entry(6, 20);
    const JudgedPdf written(write(planOf({open(pdf.table().bytes())})));
    const QJsonObject object =
        written.dictionary(written.dictionary(written.pages().first()).value(text("/PieceInfo")));
    EXPECT_EQ(object.value(text("/A")).toString(), text("u:new"));
    EXPECT_EQ(written.dictionary(object.value(text("/Last"))).value(text("/C")).toString(), text("u:seven"));
}

TEST_F(DamagedSources, ADestinationThatAScanFindsInAnotherVersionIsTheSameWhereverTheFileStands) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Names<</Dests<</Names[(q) 4 0 R]>>>>>>");
    pdf.object(2, "<</Type/Pages/Kids[10 0 R 12 0 R]/Count 2>>");
    pdf.page(10, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]/Foo 6 0 R").page(12, "two");
    pdf.object(4, "[10 0 R/Fit]").object(6, "<</B(six)>>");
    pdf.raw("4 0 obj\n[12 0 R/XYZ 7 7 7]\nendobj\n").entry(6, 20).table();
    const auto sound = open(RawPdf().catalogOf({3}).page(3, "x").table().bytes(), "sound");
    for (const bool isFirst : {true, false}) {
        const auto again = open(pdf.bytes(), isFirst ? "first" : "second");
        const JudgedPdf written(write(isFirst ? planOf({again, sound}) : planOf({sound, again})));
        const QJsonObject names = written.dictionary(written.catalog().value(text("/Names")));
        const QJsonArray pairs = written.dictionary(names.value(text("/Dests"))).value(text("/Names")).toArray();
        ASSERT_EQ(pairs.size(), 2);
        const QJsonArray destination = written.resolve(pairs[1]).toArray();
        EXPECT_EQ(destination.first().toString(), written.pages()[isFirst ? 1 : 2]);
        EXPECT_EQ(destination.at(1).toString(), text("/XYZ"));
    }
}

TEST_F(DamagedSources, AnObjectStreamThatNobodyNeedsGivesNoWarning) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one").packed(10, {{11, "<<>>"}}, "/Filter/Unknown").crossStream(12);
    const auto sound = open(RawPdf().catalogOf({3}).page(3, "x").table().bytes(), "sound");
    for (const bool isFirst : {true, false}) {
        const auto source = open(pdf.bytes(), isFirst ? "first" : "second");
        const auto plan = isFirst ? planOf({source, sound}) : planOf({sound, source});
        EXPECT_EQ(writeDocument(plan, dir.file("out.pdf")).warnings, std::vector<std::string>()) << isFirst;
    }
}

TEST_F(DamagedSources, ALargeTreeOfNodesWithOnePageEachKeepsWhatTheyHandDown) {
    constexpr int count = 300;
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    // It is believed, since it begins and ends with a page.
    pdf.page(5, "first").page(7, "last");
    std::string kids = "5 0 R ";
    for (int i = 0; i < count; ++i) {
        const std::string node = std::to_string(10 + 2 * i);
        const std::string page = std::to_string(11 + 2 * i);
        kids += node + " 0 R ";
        pdf.object(10 + 2 * i,
                   "<</Type/Pages/Count 1/Parent 2 0 R/MediaBox[0 0 111 222]/Rotate 90/Kids[" + page + " 0 R]>>");
        pdf.object(11 + 2 * i,
                   "<</Type/Page/Parent " + node + " 0 R/Annots[<</Subtype/Link/Rect[0 0 9 9]/Dest[11 0 R/Fit]>>]>>");
    }
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(count + 2) + "/Kids[" + kids + "7 0 R]>>").table();
    const auto source = open(pdf.bytes());
    const JudgedPdf out(write(planOf({source})));
    ASSERT_EQ(out.pages().size(), count + 2);
    const QJsonObject last = out.dictionary(out.pages()[count]);
    EXPECT_EQ(last[text("/MediaBox")].toArray(), (QJsonArray{0, 0, 111, 222}));
    EXPECT_EQ(last[text("/Rotate")].toInt(), 90);
    EXPECT_EQ(out.annotations(count)[0][text("/Dest")].toArray()[0].toString(), out.pages()[1]);
    EXPECT_EQ(source->warnings(), Strings()) << "the number of pages was right";
}

TEST_F(DamagedSources, ThatATreeWithOtherPagesThanItCountsWasBelievedIsSaid) {
    constexpr int count = 300;
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    std::string kids;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(10 + 2 * i) + " 0 R ";
        if (i == count / 2) {
            pdf.object(10 + 2 * i, "<</Type/Pages/Parent 2 0 R/Count 2/Kids[1000 0 R 1002 0 R]>>");
        } else {
            pdf.page(10 + 2 * i, "one");
        }
    }
    pdf.page(1000, "two").page(1002, "three");
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + "]>>").table();
    const auto source = open(pdf.bytes());
    ASSERT_EQ(source->pageCount(), 300U);
    const WriteResult result = writeDocument(planOf({source}), dir.file("out.pdf"));
    EXPECT_TRUE(result.written);
    EXPECT_EQ(result.pages, 300U);
    ASSERT_EQ(result.warnings.size(), 1U);
    EXPECT_NE(result.warnings[0].find("there are 301 pages, not 300"), std::string::npos) << result.warnings[0];
    EXPECT_EQ(source->pageCount(), 301U) << "whoever opens it from now on finds them all";
    EXPECT_EQ(test::pageMarks(write(planOf({source}))).size(), 301);
}

TEST_F(DamagedSources, APageThatIsTakenVeryOftenKeepsItsAnnotations) {
    std::string annotations;
    for (int i = 0; i < 100; ++i) annotations += std::to_string(10 + i) + " 0 R ";
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one", "/Parent 2 0 R/MediaBox[0 0 612 792]/Annots[" + annotations + "]");
    for (int i = 0; i < 100; ++i) {
        pdf.object(10 + i, "<</Subtype/Link/Rect[0 0 9 9]/P 3 0 R/A<</S/URI/URI(" + std::string(3000, 'u') + ")>>>>");
    }
    const auto source = open(pdf.table().bytes());
    DocumentPlan plan;
    for (int i = 0; i < 80; ++i) {
        plan.pages.push_back({SourcePage{source, 0, newOpening()}, true});
    }
    const JudgedPdf out(write(plan));
    EXPECT_EQ(out.annotations(79).size(), 100);
    EXPECT_EQ(out.annotations(79)[99][text("/P")].toString(), out.pages().last());
    EXPECT_EQ(source->warnings(), Strings());
}

constexpr int overlapping = 6000;

/// Objects from 20 on, many of which stand inside the text of the one before. `entries` gives those of an object.
void addOverlapping(RawPdf& pdf, const std::function<std::string(int)>& entries) {
    constexpr int deepest = 300;
    for (int i = 0; i < overlapping; ++i) {
        pdf.entry(20 + i, pdf.size());
        pdf.raw(std::to_string(20 + i) + " 0 obj<<" + entries(20 + i) + "/X(");
        if (i % deepest != deepest - 1) continue;
        for (int k = 0; k < deepest; ++k) pdf.raw(")>>");
        pdf.raw("\nendobj\n");
    }
}

/// The bytes of those texts in a file.
qsizetype overlappingBytes(const std::string& file) {
    const JudgedPdf pdf(file, JudgedPdf::Widgets::Any);
    qsizetype bytes = 0;
    for (const QString& reference : pdf.references()) {
        bytes += pdf.dictionary(reference).value(QStringLiteral("/X")).toString().size();
    }
    return bytes;
}

constexpr qsizetype mostBytes = 19'000'000;

std::string referencesToOverlapping() {
    std::string references;
    for (int i = 20; i < 20 + overlapping; ++i) references += std::to_string(i) + " 0 R ";
    return references;
}

TEST_F(DamagedSources, AnnotationsThatOverlapEachOtherDoNotBlowUpSecondCopies) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]/Annots[" + referencesToOverlapping() + "]");
    addOverlapping(pdf, [](int) { return "/Subtype/Text/Rect[0 0 9 9]"; });
    const auto source = open(pdf.table().bytes());
    EXPECT_LT(overlappingBytes(write(planOf({source, source}))), 2 * mostBytes);
}

TEST_F(DamagedSources, BeadsThatOverlapEachOtherDoNotBlowUpTheOutput) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Threads[5 0 R]>>").object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>");
    pdf.page(3, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]").object(5, "<</F 20 0 R>>");
    addOverlapping(pdf, [](int i) { return "/P 3 0 R/N " + std::to_string(i + 1) + " 0 R"; });
    const auto source = open(pdf.table().bytes());
    const auto plain = open(test::PdfFixture().page("plain").bytes(), "plain.pdf");
    EXPECT_LT(overlappingBytes(write(planOf({plain, source}))), mostBytes);
    EXPECT_LT(overlappingBytes(write(planOf({source, source}))), 2 * mostBytes);
}

TEST_F(DamagedSources, FieldsThatOverlapEachOtherDoNotBlowUpTheOutput) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[" + referencesToOverlapping() + "]>>>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>").page(3, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]");
    addOverlapping(pdf, [](int i) { return "/FT/Tx/T(f" + std::to_string(i) + ")"; });
    EXPECT_LT(overlappingBytes(write(planOf({open(pdf.table().bytes())}))), mostBytes);
}

/// A page that its own tree names very often. `kinds` gives entries of the catalog and of the page for the list of
/// objects 30 and on, which `entries` gives.
std::string repeatedPdf(const std::string& catalog, const std::string& page, const std::string& more,
                        const std::function<std::string(int)>& entries) {
    constexpr int pages = 4000;
    constexpr int objects = 3000;
    std::string kids;
    std::string list = "[";
    for (int i = 0; i < pages; ++i) kids += "3 0 R ";
    RawPdf pdf;
    for (int i = 30; i < 30 + objects; ++i) {
        list += std::to_string(i) + " 0 R ";
        pdf.object(i, "<<" + entries(i - 30) + ">>");
    }
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R" + catalog + ">>").object(6, list + "]").object(7, more);
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(pages) + "/Kids[" + kids + "]>>");
    return pdf.page(3, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]" + page).table().bytes();
}

TEST_F(DamagedSources, APageThatItsTreeNamesOftenDoesNotMultiplyWhatBelongsToIt) {
    const std::string beads = repeatedPdf("/Threads[7 0 R]", "", "<</F 30 0 R>>", [](int i) {
        return "/Type/Bead/P 3 0 R/N " + std::to_string(30 + (i + 1) % 3000) + " 0 R";
    });
    const std::string fields = repeatedPdf("/AcroForm<</Fields[7 0 R]>>", "/Annots 6 0 R", "<</T(x)/FT/Tx/Kids 6 0 R>>",
                                           [](int) { return "/Subtype/Widget/Rect[0 0 9 9]/Parent 7 0 R"; });
    const std::string elements =
        repeatedPdf("/StructTreeRoot<</K 7 0 R/ParentTree<</Nums[0 6 0 R]>>>>", "/StructParents 0",
                    "<</S/Document/K 6 0 R>>", [](int i) { return "/S/P/P 7 0 R/Pg 3 0 R/K " + std::to_string(i); });
    const auto plain = open(test::PdfFixture().page("plain").bytes(), "plain.pdf");
    int number = 0;
    for (const std::string& bytes : {beads, fields, elements}) {
        const auto source = open(bytes, std::to_string(++number));
        const std::string file = writeSoon(planOf({plain, source}));
        EXPECT_LT(contentOf(file).size(), 10 * bytes.size()) << number;
    }
}

TEST_F(DamagedSources, AnObjectThatIsTooLongIsCutWithAWarning) {
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one", "/Parent 2 0 R/MediaBox[0 0 99 99]/PieceInfo<</X 5 0 R>>");
    pdf.object(5, '(' + std::string(100U << 20U, 'x') + ')').table();
    const auto source = open(pdf.bytes());
    EXPECT_EQ(test::pageMarks(write(planOf({source}))), Strings{"one"});
    ASSERT_EQ(source->warnings().size(), 1U);
    EXPECT_NE(source->warnings()[0].find("longer than any sound one"), std::string::npos) << source->warnings()[0];
    EXPECT_NE(source->warnings()[0].find("object 5"), std::string::npos) << source->warnings()[0];
}

TEST_F(DamagedSources, OneMalformedEntryLosesNoOther) {
    RawPdf pdf;
    pdf.catalogOf({3}).object(
        3, "<</Type/Page/Parent 2 0 R/Foo 1 2/MediaBox[0 0 99 99]/Contents 4 0 R" + RawPdf::font() + ">>");
    const std::string content = RawPdf::content("one");
    std::string hex;
    for (const char c : content) {
        constexpr std::string_view digits = "0123456789abcdef";
        hex += digits[static_cast<unsigned char>(c) >> 4U];
        hex += digits[static_cast<unsigned char>(c) & 15U];
    }
    pdf.stream(4, "/Foo 1 2/Filter/ASCIIHexDecode", hex + '>').table();
    EXPECT_EQ(test::pageMarks(write(planOf({open(pdf.bytes())}))), Strings{"one"});
}

TEST_F(DamagedSources, NullInAPageDoesNotHideWhatItInherits) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[5 0 R]/MediaBox[0 0 50 60]>>");
    pdf.object(5, "<</Type/Pages/Parent 2 0 R/Count 1/Kids[3 0 R]/MediaBox 77 0 R>>");
    pdf.object(3, "<</Type/Page/Parent 5 0 R/MediaBox null/Resources null>>").table();
    const JudgedPdf out(write(planOf({open(pdf.bytes())})));
    EXPECT_EQ(out.dictionary(out.pages()[0])[text("/MediaBox")].toArray(), (QJsonArray{0, 0, 50, 60}));
}

TEST_F(DamagedSources, PlacesInTheStructureTreeOfAnotherInputAreLeftBehind) {
    const auto file = [](const char* mark) {
        RawPdf pdf;
        pdf.catalogOf({3}).page(3, mark, "/Parent 2 0 R/MediaBox[0 0 9 9]/StructParents 0/XF 8 0 R");
        return pdf.stream(8, "/Subtype/Form/BBox[0 0 9 9]/StructParents 1", "q Q").table().bytes();
    };
    const JudgedPdf out(write(planOf({open(file("A"), "a.pdf"), open(file("B"), "b.pdf")})));
    const QJsonObject first = out.dictionary(out.pages()[0]);
    const QJsonObject second = out.dictionary(out.pages()[1]);
    EXPECT_EQ(first[text("/StructParents")].toInt(-1), 0);
    EXPECT_EQ(out.dictionary(first[text("/XF")])[text("/StructParents")].toInt(-1), 1);
    EXPECT_FALSE(second.contains(text("/StructParents")));
    EXPECT_FALSE(out.dictionary(second[text("/XF")]).contains(text("/StructParents")));
}

TEST_F(DamagedSources, ATreeThatMultipliesPagesIsCutOff) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    std::string pages;
    std::string nodes;
    for (int i = 0; i < 5000; ++i) pages += "3 0 R ";
    for (int i = 0; i < 2000; ++i) {
        nodes += std::to_string(10 + i) + " 0 R ";
        pdf.object(10 + i, "<</Type/Pages/Parent 2 0 R/Count 5000/Kids 4 0 R>>");
    }
    pdf.object(3, "<</Type/Page/Parent 2 0 R>>").object(4, '[' + pages + ']');
    pdf.object(2, "<</Type/Pages/Count 10000000/Kids[" + nodes + "]>>").table();
    const auto source = open(pdf.bytes());
    ASSERT_TRUE(source);
    EXPECT_LT(source->pageCount(), 100'000U);
    ASSERT_EQ(source->warnings().size(), 1U);
    EXPECT_NE(source->warnings()[0].find("more pages than the file can hold"), std::string::npos);
}

TEST_F(DamagedSources, HostileFilesEndSoon) {
    constexpr double patience = 10;  // seconds, on a slow machine under a sanitizer; without bounds these take minutes
    std::string streams;
    std::string strings;
    for (int i = 1; i < 40'000; ++i) {
        streams += std::to_string(i) + " 0 obj<<>>stream\nendstream\n";
        strings += std::to_string(i) + " 0 obj(\n";
    }
    EXPECT_LT(secondsFor("%PDF-1.4\n" + streams), patience);
    EXPECT_LT(secondsFor("%PDF-1.4\n" + strings), patience);
    RawPdf unclosed;
    std::string references;
    unclosed.catalogOf({3});
    for (int i = 10; i < 20'000; ++i) {
        unclosed.object(i, "(");
        references += std::to_string(i) + " 0 R ";
    }
    unclosed.page(3, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]/X[" + references + "]").table();
    EXPECT_LT(secondsFor(unclosed.bytes()), patience);
}

TEST_F(DamagedSources, ACrossReferenceStreamOfEndlessRowsIsNotBelieved) {
    std::string rows;
    Deflater(6).deflate(std::string(50U << 20U, '\0'), rows);
    RawPdf pdf;
    pdf.catalogOf({3}).page(3, "one");
    const std::size_t start = pdf.size();
    pdf.stream(30, "/Type/XRef/Root 1 0 R/Size 50000000/W[0 1 0]/Filter/FlateDecode", rows);
    pdf.raw("startxref\n" + std::to_string(start) + "\n%%EOF\n");
    EXPECT_EQ(marks(pdf.bytes()), Strings{"one"});
}

}  // namespace
}  // namespace quillon::pdf
