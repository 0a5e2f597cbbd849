#include "pdf/write/SourceCopier.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RawPdf.h"

#include <QJsonArray>

#include <set>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::PdfFixture;
using test::RawPdf;

const std::string bare = "/Parent 2 0 R/MediaBox[0 0 612 792]";

/// What is taken of a source, and what its references become.
class Copying : public EngineTest {
protected:
    std::string writePages(const std::shared_ptr<Source>& source, const std::vector<std::uint32_t>& pages) const {
        DocumentPlan plan = planOf({source});
        plan.pages = pagesOf(source, pages);
        return write(plan);
    }

    static QString text(const char* latin) { return QString::fromLatin1(latin); }

    /// The page that the destination of a page's first annotation names.
    static QString target(const JudgedPdf& pdf, qsizetype page, qsizetype annotation = 0) {
        return pdf.resolve(pdf.annotations(page).at(annotation)[QStringLiteral("/Dest")]).toArray().at(0).toString();
    }
};

TEST_F(Copying, StreamsAreCopiedByteForByte) {
    std::string odd = "BT /F1 24 Tf 20 20 Td (one) Tj ET \r\n%";
    odd += '\0';
    odd += "\xff endstream? \r";
    const std::string bytes = RawPdf()
                                  .catalogOf({3})
                                  .object(3, "<</Type/Page/Contents[4 0 R 5 0 R]" + RawPdf::font() + bare + ">>")
                                  .stream(4, "/Marker/First", odd)
                                  .stream(5, "/Filter[/ASCIIHexDecode]/Marker/Second", "51 0a 51>")
                                  .table()
                                  .bytes();
    const JudgedPdf pdf(writePages(open(bytes), {0}));
    const QStringList first = pdf.having(text("/Marker"), text("/First"));
    const QStringList second = pdf.having(text("/Marker"), text("/Second"));
    ASSERT_EQ(first.size(), 1);
    ASSERT_EQ(second.size(), 1);
    EXPECT_EQ(pdf.rawStream(first[0]).toStdString(), odd);
    EXPECT_EQ(pdf.rawStream(second[0]).toStdString(), "51 0a 51>");
    EXPECT_EQ(pdf.dictionary(pdf.pages()[0])[text("/Contents")].toArray(), (QJsonArray{first[0], second[0]}));
}

TEST_F(Copying, StreamsOfAPageThatAreMissingAreLeftOut) {
    const std::string rest = RawPdf::font() + bare + ">>";
    RawPdf file;
    file.catalogOf({3, 4, 5}).stream(6, "", RawPdf::content("one"));
    file.object(3, "<</Type/Page/Contents[9 0 R 6 0 R null]" + rest);
    file.object(4, "<</Type/Page/Contents[9 0 R]" + rest).object(5, "<</Type/Page/Contents 9 0 R" + rest);
    const JudgedPdf pdf(writePages(open(file.table().bytes()), {0, 1, 2}));
    const auto contents = [&pdf](qsizetype page) { return pdf.dictionary(pdf.pages()[page]).value(text("/Contents")); };
    EXPECT_EQ(contents(0).toArray().size(), 1);
    EXPECT_TRUE(contents(1).isUndefined());
    EXPECT_TRUE(contents(2).isUndefined());
}

TEST_F(Copying, ALongObjectIsCopiedToItsEnd) {
    for (const int length : {300, 1000, 1020, 1030, 20'000}) {
        std::string array = "[(" + std::string(static_cast<std::size_t>(length), 'x') + ")";
        for (int i = 0; i < 3; ++i) array += " 11 0 R";
        RawPdf pdf = RawPdf().catalogOf({3}).page(3, "one", "/MediaBox[0 0 9 9]/Long 10 0 R");
        pdf.object(10, array + "]").object(11, "<</Last true>>");
        const JudgedPdf judged(write(planOf({open(pdf.table().bytes())})));
        const QJsonArray copied =
            judged.resolve(judged.resolve(judged.pages().first()).toObject().value(QStringLiteral("/Long"))).toArray();
        ASSERT_EQ(copied.size(), 4) << length;
        EXPECT_TRUE(judged.resolve(copied[3]).toObject().value(QStringLiteral("/Last")).toBool()) << length;
    }
}

TEST_F(Copying, ALargeStreamIsCopiedByteForByte) {
    std::string large = RawPdf::content("one");
    for (int i = 0; large.size() < 3'000'000; ++i) large += " % " + std::to_string(i) + "\n";
    const JudgedPdf pdf(
        writePages(open(RawPdf().catalogOf({3}).page(3, "x").stream(4, {}, large).table().bytes()), {0}));
    EXPECT_TRUE(pdf.rawStream(pdf.dictionary(pdf.pages()[0])[text("/Contents")]).toStdString() == large);
}

TEST_F(Copying, AnnotationsTravelWithTheirPages) {
    const std::string annotations = "/Annots[<</Type/Annot/Subtype/Text/Rect[1 2 3 4]/Contents(direct)>> 9 0 R]";
    const std::string bytes =
        RawPdf()
            .catalogOf({3})
            .page(3, "one", bare + annotations)
            .object(9, "<</Type/Annot/Subtype/Text/P 3 0 R/Rect[1 2 3 4]/Contents(indirect)/AP<</N 10 0 R>>>>")
            .stream(10, "/Type/XObject/Subtype/Form/BBox[0 0 1 1]", "q Q")
            .table()
            .bytes();
    const JudgedPdf pdf(writePages(open(bytes), {0}));
    const auto found = pdf.annotations(0);
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0][text("/Contents")].toString(), text("u:direct"));
    EXPECT_EQ(found[1][text("/Contents")].toString(), text("u:indirect"));
    EXPECT_EQ(found[1][text("/P")].toString(), pdf.pages()[0]);
    EXPECT_EQ(pdf.rawStream(found[1][text("/AP")].toObject()[text("/N")]).toStdString(), "q Q");
}

TEST_F(Copying, ALinkBetweenTakenPagesLeadsToTheCopy) {
    const JudgedPdf pdf(writePages(open(PdfFixture("A", 3).link(0, 2).link(2, 0).bytes()), {2, 0}));
    EXPECT_EQ(target(pdf, 0), pdf.pages()[1]);
    EXPECT_EQ(target(pdf, 1), pdf.pages()[0]);
}

TEST_F(Copying, ALinkToAPageThatWasNotTakenIsNullAndDoesNotDragIt) {
    const auto source = open(PdfFixture("A", 3).link(0, 2).bytes());
    const JudgedPdf pdf(writePages(source, {0}));
    ASSERT_EQ(pdf.annotations(0).size(), 1);
    EXPECT_TRUE(pdf.annotations(0)[0][text("/Dest")].toArray().at(0).isNull());
    EXPECT_EQ(pdf.having(text("/Type"), text("/Page")).size(), 1);
    for (const QString& reference : pdf.references())
        EXPECT_FALSE(pdf.rawStream(reference).contains("(A3)")) << reference.toStdString();
}

TEST_F(Copying, NothingElseOfTheSourceIsDragged) {
    // Through articles, parents, structure and actions, every page of a file can be reached from any other.
    RawPdf pdf;
    pdf.catalogOf({3, 5}).page(3, "one", bare + "/B[20 0 R]/Next 5 0 R/Up 2 0 R/Root 1 0 R/Annots[21 0 R]");
    pdf.page(5, "two", bare + "/B[20 0 R]");
    pdf.object(20, "<</N 20 0 R/P 5 0 R/T<</F 20 0 R>>>>").object(21, "<</Subtype/Link/Rect[0 0 1 1]/A 22 0 R>>");
    pdf.object(22, "<</S/GoTo/D[5 0 R/Fit]/Next[<</S/GoTo/D[3 0 R/Fit]>>]>>");
    const auto other = open(PdfFixture("B", 1).bytes(), "b.pdf");
    DocumentPlan plan = planOf({other});
    for (auto& page : pagesOf(open(pdf.table().bytes()), {0})) plan.pages.push_back(page);
    const JudgedPdf out(write(plan));
    EXPECT_EQ(out.having(text("/Type"), text("/Page")).size(), 2);
    EXPECT_EQ(out.having(text("/Type"), text("/Catalog")).size(), 1);
    EXPECT_EQ(out.having(text("/Type"), text("/Pages")).size(), 1);
    const QJsonObject page = out.dictionary(out.pages()[1]);
    for (const char* key : {"/Next", "/Up", "/Root"})
        EXPECT_TRUE(page[text(key)].isNull() || page[text(key)].isUndefined()) << key;
    for (const QString& reference : out.references()) EXPECT_FALSE(out.rawStream(reference).contains("(two)"));
}

TEST_F(Copying, APageRemovedByAnUpdateIsNotDraggedByALink) {
    for (const bool packed : {false, true}) {
        RawPdf pdf;
        pdf.catalogOf({3, 5}).page(3, "one", bare + "/Annots[<</Subtype/Link/Rect[0 0 1 1]/Dest[5 0 R/Fit]>>]");
        const std::string removed = "<</Type/Page/Contents 6 0 R" + RawPdf::font() + bare + ">>";
        pdf.stream(6, {}, RawPdf::content("two"));
        if (packed) {
            pdf.packed(9, {{5, removed}}).crossStream(10);
        } else {
            pdf.object(5, removed).table();
        }
        pdf.object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>");
        const auto bytes = (packed ? pdf.crossStream(11) : pdf.table()).bytes();
        const JudgedPdf out(writePages(open(bytes), {0}));
        EXPECT_EQ(out.having(text("/Type"), text("/Page")).size(), 1) << packed;
        for (const QString& reference : out.references())
            EXPECT_FALSE(out.rawStream(reference).contains("(two)")) << packed;
    }
}

/// A page with two annotations: a comment with its popup, and a link with an indirect action to its own page.
std::string commented() {
    RawPdf pdf;
    pdf.catalogOf({3, 5}).page(3, "one", bare + "/Annots 10 0 R").page(5, "two", bare);
    pdf.object(10, "[11 0 R 12 0 R 13 0 R]");
    pdf.object(11, "<</Subtype/Text/Rect[0 0 9 9]/P 3 0 R/Popup 12 0 R/Contents(comment)>>");
    pdf.object(12, "<</Subtype/Popup/Rect[0 0 9 9]/P 3 0 R/Parent 11 0 R>>");
    pdf.object(13, "<</Subtype/Link/Rect[0 0 9 9]/P 3 0 R/A 14 0 R>>");
    pdf.object(14, "<</S/GoTo/D 15 0 R>>").object(15, "[3 0 R/Fit]");
    return pdf.table().bytes();
}

/// The pages of `commented` that stand at these places of a file, each with annotations that are its own.
void expectOwnAnnotations(const JudgedPdf& pdf, const std::vector<qsizetype>& places) {
    std::set<QString> seen;
    for (const qsizetype place : places) {
        const QString page = pdf.pages()[place];
        EXPECT_TRUE(seen.insert(page).second);
        const QJsonArray list = pdf.resolve(pdf.dictionary(page)[QStringLiteral("/Annots")]).toArray();
        ASSERT_EQ(list.size(), 3);
        for (const QJsonValue& reference : list) {
            EXPECT_TRUE(seen.insert(reference.toString()).second);
            EXPECT_EQ(pdf.dictionary(reference)[QStringLiteral("/P")].toString(), page);
        }
        EXPECT_EQ(pdf.dictionary(list[0])[QStringLiteral("/Popup")], list[1]);
        EXPECT_EQ(pdf.dictionary(list[1])[QStringLiteral("/Parent")], list[0]);
        const QJsonObject action = pdf.dictionary(pdf.dictionary(list[2])[QStringLiteral("/A")]);
        EXPECT_EQ(pdf.resolve(action[QStringLiteral("/D")]).toArray().at(0).toString(), page);
    }
}

TEST_F(Copying, APageTakenTwiceIsTwoPagesWithAnnotationsOfTheirOwn) {
    const JudgedPdf pdf(writePages(open(commented()), {0, 1, 0, 0}));
    expectOwnAnnotations(pdf, {0, 2, 3});
}

TEST_F(Copying, APageTakenTwiceHasItsContentOnce) {
    const JudgedPdf pdf(writePages(open(commented()), {0, 0}));
    const auto contents = [&](qsizetype page) {
        return pdf.dictionary(pdf.pages()[page]).value(QStringLiteral("/Contents"));
    };
    EXPECT_NE(pdf.pages()[0], pdf.pages()[1]);
    EXPECT_EQ(contents(0), contents(1));
}

TEST_F(Copying, AFileOpenedTwiceKeepsItsLinksInEachCopy) {
    const auto source = open(PdfFixture("A", 2).link(0, 1).link(1, 0).bytes());
    DocumentPlan plan = planOf({source, source, source});
    const JudgedPdf pdf(write(plan));
    ASSERT_EQ(pdf.pages().size(), 6);
    for (qsizetype copy = 0; copy < 3; ++copy) {
        EXPECT_EQ(target(pdf, 2 * copy), pdf.pages()[2 * copy + 1]) << copy;
        EXPECT_EQ(target(pdf, 2 * copy + 1), pdf.pages()[2 * copy]) << copy;
    }
}

TEST_F(Copying, AFileOpenedTwiceKeepsItsCommentsInEachCopy) {
    const auto source = open(commented());
    const JudgedPdf pdf(write(planOf({source, source})));
    expectOwnAnnotations(pdf, {0, 2});
}

TEST_F(Copying, AFileOpenedManyTimesHasItsResourcesOnce) {
    std::string font = "font file ";
    for (int i = 0; i < 1000; ++i) font += std::to_string(i * 7919);
    RawPdf raw;
    raw.catalogOf({3}).page(3, "one", bare + "/Private 10 0 R").object(10, "<</File 11 0 R>>").stream(11, {}, font);
    dir.write("in.pdf", raw.table().bytes());
    std::vector<std::shared_ptr<Source>> openings;
    for (int i = 0; i < 50; ++i) openings.push_back(Source::open(dir.file("in.pdf")));
    const JudgedPdf pdf(write(planOf(openings)));
    EXPECT_EQ(pdf.pages().size(), 50);
    QStringList found;
    for (const QString& reference : pdf.references()) {
        if (pdf.rawStream(reference).toStdString() == font) found.append(reference);
    }
    EXPECT_EQ(found.size(), 1);
    EXPECT_LT(pdf.objectCount(), 70);
}

/// A file whose page refers to a font file through a dictionary of its own.
std::string withFontFile(const std::string& mark, const std::string& entries, const std::string& data) {
    RawPdf pdf;
    // The font file has another object number in each file.
    const int number = 20 + mark[0] % 20;
    pdf.catalogOf({3})
        .page(3, mark, bare + "/Descriptor 10 0 R")
        .object(10, "<</Name/" + mark + "/FontFile " + std::to_string(number) + " 0 R>>");
    return pdf.stream(number, entries, data).table().bytes();
}

TEST_F(Copying, EqualStreamsOfDifferentFilesAreWrittenOnce) {
    const std::string data(20'000, 'f');
    const std::string large(3'000'000, 'g');
    for (const std::string& font : {data, large}) {
        const auto a = open(withFontFile("a", "/Length1 17", font), "a.pdf");
        const auto b = open(withFontFile("b", "/Length1 17", font), "b.pdf");
        const JudgedPdf pdf(write(planOf({a, b})));
        int found = 0;
        for (const QString& reference : pdf.references())
            found += pdf.rawStream(reference).toStdString() == font ? 1 : 0;
        EXPECT_EQ(found, 1);
        for (const char* name : {"/a", "/b"}) {
            const QString descriptor = pdf.having(text("/Name"), text(name)).value(0);
            EXPECT_EQ(pdf.rawStream(pdf.dictionary(descriptor)[text("/FontFile")]).size(),
                      static_cast<qsizetype>(font.size()))
                << name;
        }
    }
}

TEST_F(Copying, StreamsWithOtherDictionariesAreNotTakenForEqual) {
    const std::string data(20'000, 'f');
    const auto a = open(withFontFile("a", "/Length1 17", data), "a.pdf");
    const auto b = open(withFontFile("b", "/Length1 18", data), "b.pdf");
    const JudgedPdf pdf(write(planOf({a, b})));
    for (const auto& [name, length] : {std::pair{"/a", 17}, {"/b", 18}}) {
        const QJsonObject descriptor = pdf.dictionary(pdf.having(text("/Name"), text(name)).value(0));
        EXPECT_EQ(pdf.dictionary(descriptor[text("/FontFile")])[text("/Length1")].toInt(), length);
    }
}

TEST_F(Copying, StreamsThatReferToEachOtherAreCopied) {
    RawPdf raw;
    raw.catalogOf({3}).page(3, "one", bare + "/Private 10 0 R");
    raw.stream(10, "/Name/A/Other 11 0 R", "first").stream(11, "/Name/B/Other 10 0 R/Own 11 0 R", "second");
    const JudgedPdf pdf(writePages(open(raw.table().bytes()), {0}));
    const QString a = pdf.having(text("/Name"), text("/A")).value(0);
    const QString b = pdf.having(text("/Name"), text("/B")).value(0);
    EXPECT_EQ(pdf.dictionary(a)[text("/Other")].toString(), b);
    EXPECT_EQ(pdf.dictionary(b)[text("/Other")].toString(), a);
    EXPECT_EQ(pdf.dictionary(b)[text("/Own")].toString(), b);
    EXPECT_EQ(pdf.rawStream(a).toStdString(), "first");
    EXPECT_EQ(pdf.rawStream(b).toStdString(), "second");
}

TEST_F(Copying, AChainOfStreamsDoesNotExhaustTheStack) {
    constexpr int length = 50'000;
    RawPdf raw;
    raw.catalogOf({3}).page(3, "one", bare + "/Private 10 0 R");
    for (int i = 0; i < length; ++i) raw.stream(10 + i, "/Next " + std::to_string(11 + i) + " 0 R", std::to_string(i));
    const std::string path = writePages(open(raw.table().bytes()), {0});
    EXPECT_GT(JudgedPdf(path).objectCount(), length);
}

TEST_F(Copying, StreamsThatOverlapGiveNoMoreThanTheFileCanHold) {
    // Thirty thousand objects at thirty thousand places of one stream, each reaching to its end.
    constexpr int count = 30'000;
    std::string heads;
    std::vector<std::size_t> places;
    for (int i = 0; i < count; ++i) {
        places.push_back(heads.size());
        heads += std::to_string(10 + i) + " 0 obj<<>>stream\n";
    }
    RawPdf raw;
    std::string kids = "[";
    for (int i = 0; i < count; ++i) kids += std::to_string(10 + i) + " 0 R ";
    raw.catalogOf({3}).page(3, "one", bare + "/Private 9 0 R").object(9, kids + "]");
    const std::size_t begin = raw.size();
    raw.raw(heads).raw("\nendstream\nendobj\n");
    for (int i = 0; i < count; ++i) raw.entry(10 + i, begin + places[static_cast<std::size_t>(i)]);
    const std::string bytes = raw.table().bytes();
    const auto source = open(bytes);
    const auto result = writeDocument(planOf({source}), dir.file("out.pdf"));
    EXPECT_TRUE(result.written);
    EXPECT_LT(result.bytes, 5 * bytes.size() + (20U << 20U));
    EXPECT_EQ(test::qpdfProblems(dir.file("out.pdf")), "");
    EXPECT_EQ(test::pageMarks(dir.file("out.pdf")), Strings{"one"});
}

TEST_F(Copying, MalformedObjectsAreWrittenWellFormed) {
    RawPdf raw;
    raw.catalogOf({3}).page(3, "one", bare + "/P1 10 0 R/P2 11 0 R/P3 12 0 R/P4 13 0 R/P5 14 0 R");
    raw.object(10, "<</A[1 2/B 3")
        .object(11, "(never closed")
        .object(12, "<</A 1 2/B 3>")
        .object(13, "]]>>")
        .object(14, "% nothing");
    (void)writePages(open(raw.table().bytes()), {0});
}

TEST_F(Copying, APageWithoutItsContentKeepsTheRest) {
    DocumentPlan plan = planOf({open(PdfFixture("A", 2).link(0, 1).bytes())});
    plan.pages[0].withContent = false;
    const std::string path = write(plan);
    EXPECT_EQ(test::pageMarks(path), (Strings{"", "A2"}));
    EXPECT_EQ(JudgedPdf(path).annotations(0).size(), 1);
}

TEST_F(Copying, AnnotationsThatPagesShareAreCopiedOnceWithEachOpening) {
    constexpr int count = 300;
    RawPdf pdf;
    std::string kids;
    std::string annotations;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(10 + 2 * i) + " 0 R ";
        annotations += std::to_string(10 + 2 * count + i) + " 0 R ";
        // Half of the pages share the list as well.
        const std::string list = i % 2 == 0 ? "3 0 R" : "[" + std::to_string(10 + 2 * count) + " 0 R]";
        pdf.page(10 + 2 * i, "A", bare + "/Annots " + list);
        pdf.object(10 + 2 * count + i, "<</Subtype/Link/Rect[0 0 9 9]/A 4 0 R/N " + std::to_string(i) + ">>");
    }
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(3, "[" + annotations + "]");
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + "]>>");
    pdf.object(4, "<</S/GoTo/D[10 0 R/Fit]>>");
    const std::string bytes = pdf.table().bytes();
    const auto source = open(bytes);
    const std::string file = write(planOf({source, source}));
    EXPECT_LT(contentOf(file).size(), bytes.size());
    const JudgedPdf out(file);
    EXPECT_EQ(out.having(text("/Subtype"), text("/Link")).size(), 2 * count);
    EXPECT_EQ(out.annotations(count).size(), count);
    EXPECT_EQ(out.annotations(count), out.annotations(count + 2));
    for (const qsizetype page : {0, count}) {
        const QJsonObject action = out.dictionary(out.annotations(page)[7].value(text("/A")));
        EXPECT_EQ(action.value(text("/D")).toArray().at(0).toString(), out.pages()[page]);
    }
}

}  // namespace
}  // namespace quillon::pdf
