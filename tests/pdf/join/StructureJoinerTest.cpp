#include "pdf/join/StructureJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::JudgedPdf;
using test::RawPdf;
using test::taggedPdf;
using test::tagLines;

class Tags : public EngineTest {
protected:
    static QJsonObject root(const JudgedPdf& pdf) {
        return pdf.dictionary(pdf.catalog().value(QStringLiteral("/StructTreeRoot")));
    }
    std::string part(const std::shared_ptr<Source>& source, const std::vector<std::uint32_t>& pages) const {
        DocumentPlan plan;
        plan.pages = pagesOf(source, pages);
        return write(plan);
    }
    static QString text(const char* latin) { return QString::fromLatin1(latin); }
    static qsizetype pdfKeys(const JudgedPdf& pdf, const char* entry) {
        return pdf.dictionary(root(pdf).value(text(entry))).size();
    }
};

const Strings whole{"Document/Text@1", "Document/Text@2", "Document/Link@2"};

TEST_F(Tags, OfASingleInputStay) {
    EXPECT_EQ(tagLines(JudgedPdf(write(planOf({open(taggedPdf("A"))})))), whole);
}

TEST_F(Tags, OfAllInputsStandSideBySide) {
    const auto plain = open(RawPdf().catalogOf({3}).page(3, "P").table().bytes(), "p");
    const std::string file = write(planOf({open(taggedPdf("A"), "a"), plain, open(taggedPdf("B"), "b")}));
    const JudgedPdf pdf(file);
    EXPECT_EQ(tagLines(pdf), (Strings{"Document/Text@1", "Document/Text@2", "Document/Link@2", "Document/Text@4",
                                      "Document/Text@5", "Document/Link@5"}));
    EXPECT_TRUE(pdf.catalog().value(text("/MarkInfo")).toObject().value(text("/Marked")).toBool());
    const auto read = test::runProgram(text("pdfinfo"), {text("-struct-text"), QString::fromStdString(file)});
    for (const char* mark : {"\"A1\"", "\"A2\"", "\"B1\"", "\"B2\""}) {
        EXPECT_NE(read.output.find(mark), std::string::npos) << mark << read.output;
    }
}

TEST_F(Tags, OfALaterInputAloneAreKept) {
    const auto plain = open(RawPdf().catalogOf({3}).page(3, "P").table().bytes(), "p");
    EXPECT_EQ(tagLines(JudgedPdf(write(planOf({plain, open(taggedPdf("B"), "b")})))),
              (Strings{"Document/Text@2", "Document/Text@3", "Document/Link@3"}));
}

TEST_F(Tags, OfAPartAreThoseOfItsPages) {
    const auto source = open(taggedPdf("A"));
    const JudgedPdf first(part(source, {0}));
    EXPECT_EQ(tagLines(first), (Strings{"Document/Text@1"}));
    EXPECT_TRUE(first.having(text("/S"), text("/Link")).isEmpty());
    EXPECT_EQ(tagLines(JudgedPdf(part(source, {1}))), (Strings{"Document/Text@1", "Document/Link@1"}));
}

TEST_F(Tags, OfAnInputTakenTwiceLeadToItsCopies) {
    const auto source = open(taggedPdf("A"));
    const Strings both{"Document/Text@1", "Document/Text@2", "Document/Link@2",
                       "Document/Text@3", "Document/Text@4", "Document/Link@4"};
    EXPECT_EQ(tagLines(JudgedPdf(write(planOf({source, source})))), both);
    EXPECT_EQ(tagLines(JudgedPdf(part(source, {0, 1, 0, 1}))), both);
}

TEST_F(Tags, TypesAndClassesOfTheSameNameThatMeanSomethingElseGetNewOnes) {
    const JudgedPdf pdf(write(planOf({open(taggedPdf("A", "P"), "a"), open(taggedPdf("B", "Note"), "b")})));
    EXPECT_EQ(tagLines(pdf), (Strings{"Document/Text@1", "Document/Text@2", "Document/Link@2", "Document/Text-2@3",
                                      "Document/Text-2@4", "Document/Link@4"}));
    const QJsonObject roles = root(pdf).value(text("/RoleMap")).toObject();
    EXPECT_EQ(roles.value(text("/Text")).toString(), text("/P"));
    EXPECT_EQ(roles.value(text("/Text-2")).toString(), text("/Note"));
    EXPECT_EQ(root(pdf).value(text("/ClassMap")).toObject().keys(), (QStringList{text("/Wide"), text("/Wide-2")}));
    EXPECT_EQ(pdf.having(text("/C"), text("/Wide-2")).size(), 1);
}

TEST_F(Tags, IdentifiersAreMadeUniqueWithTheCellsThatNameThem) {
    const JudgedPdf pdf(write(planOf({open(taggedPdf("A"), "a"), open(taggedPdf("B"), "b")})));
    const QJsonArray ids = pdf.dictionary(root(pdf).value(text("/IDTree"))).value(text("/Names")).toArray();
    ASSERT_EQ(ids.size(), 4);
    EXPECT_EQ(ids[0].toString(), text("u:id"));
    EXPECT_EQ(ids[2].toString(), text("u:id-2"));
    EXPECT_EQ(pdf.dictionary(ids[1]).value(text("/Alt")).toString(), text("u:A"));
    EXPECT_EQ(pdf.dictionary(ids[3]).value(text("/Alt")).toString(), text("u:B"));
    EXPECT_EQ(pdf.dictionary(ids[3]).value(text("/ID")).toString(), text("u:id-2"));
    QStringList headers;
    for (const QString& element : pdf.having(text("/S"), text("/Text"))) {
        const QJsonObject attributes = pdf.dictionary(element).value(text("/A")).toObject();
        if (!attributes.isEmpty()) headers += attributes.value(text("/Headers")).toArray().at(0).toString();
    }
    headers.sort();
    EXPECT_EQ(headers, (QStringList{text("u:id"), text("u:id-2")}));
}

TEST_F(Tags, LongIdentifiersOfAPartAreKept) {
    const auto tagged = [this](const char* mark) {
        std::string bytes = taggedPdf(mark);
        for (std::size_t at = bytes.find("(id)"); at != std::string::npos; at = bytes.find("(id)", at + 1))
            bytes.replace(at, 4, "(an identifier that is longer than most)");
        return open(bytes, mark);
    };
    DocumentPlan plan;
    for (const char* mark : {"A", "B", "C"}) {
        const auto pages = pagesOf(tagged(mark), {0});
        plan.pages.insert(plan.pages.end(), pages.begin(), pages.end());
    }
    const JudgedPdf pdf(write(plan));
    const QJsonArray ids = pdf.dictionary(root(pdf).value(text("/IDTree"))).value(text("/Names")).toArray();
    ASSERT_EQ(ids.size(), 6);
    const QString first = text("u:an identifier that is longer than most");
    EXPECT_EQ(ids[0].toString(), first);
    EXPECT_EQ(ids[2].toString(), first + text("-2"));
    EXPECT_EQ(ids[4].toString(), first + text("-3"));
    for (int i = 0; i < 6; i += 2) {
        EXPECT_EQ(pdf.dictionary(ids[i + 1]).value(text("/ID")), ids[i]);
    }
}

TEST_F(Tags, AnotherLanguageIsSaidOfTheElementsThatHaveIt) {
    for (const char* role : {"P", "Note"}) {
        const auto a = open(taggedPdf("A", "P", "en"), "a");
        const auto b = open(taggedPdf("B", role, "de"), std::string("b") + role);
        const JudgedPdf pdf(write(planOf({a, b})));
        EXPECT_EQ(pdf.catalog().value(text("/Lang")).toString(), text("u:en"));
        const QStringList german = pdf.having(text("/Lang"), text("u:de"));
        ASSERT_EQ(german.size(), 1);
        EXPECT_EQ(pdf.dictionary(german[0]).value(text("/S")).toString(), text("/Document"));
    }
}

TEST_F(Tags, LinksToElementsStayWithAWholeInputAndElseLeadToThePage) {
    const auto source = open(taggedPdf("A"));
    const auto plain = open(RawPdf().catalogOf({3}).page(3, "P").table().bytes(), "p");
    const JudgedPdf pdf(write(planOf({plain, source})));
    const QJsonObject link = pdf.dictionary(pdf.annotations(2).first().value(text("/A")));
    EXPECT_EQ(pdf.dictionary(link.value(text("/SD")).toArray().at(0)).value(text("/Alt")).toString(), text("u:A"));
    const QJsonObject alone = JudgedPdf(part(source, {1})).annotations(0).first().value(text("/A")).toObject();
    EXPECT_FALSE(alone.contains(text("/SD")));
}

TEST_F(Tags, WhatIsNotTaggedIsNoPartOfTheTreeOfOthers) {
    RawPdf raw;
    raw.catalogOf({3}).page(3, "P", "/Parent 2 0 R/MediaBox[0 0 9 9]/StructParents 0/Annots[7 0 R]");
    raw.object(7, "<</Type/Annot/Subtype/Link/Rect[0 0 9 9]/StructParent 1>>");
    const JudgedPdf pdf(write(planOf({open(taggedPdf("A"), "a"), open(raw.table().bytes(), "p")})));
    EXPECT_EQ(tagLines(pdf), whole);
    EXPECT_FALSE(pdf.dictionary(pdf.pages().last()).contains(text("/StructParents")));
    EXPECT_FALSE(pdf.annotations(2).first().contains(text("/StructParent")));
}

TEST_F(Tags, ContentOfFormsIsFoundInEveryInput) {
    const auto withForm = [this](const std::string& name) {
        RawPdf raw;
        raw.object(1, "<</Type/Catalog/Pages 2 0 R/StructTreeRoot 20 0 R/MarkInfo<</Marked true>>>>");
        raw.object(2, "<</Type/Pages/Count 1/Kids[10 0 R]>>");
        raw.object(10,
                   "<</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]/Contents 11 0 R/Resources<</XObject<</X 12 0 "
                   "R>>>>>>");
        raw.stream(11, {}, "/X Do");
        raw.stream(12, "/Type/XObject/Subtype/Form/BBox[0 0 9 9]/StructParents 7", "/P<</MCID 0>>BDC 0 0 9 9 re f EMC");
        raw.object(20, "<</Type/StructTreeRoot/K[21 0 R]/ParentTree<</Nums[7[21 0 R]]>>>>");
        raw.object(21, "<</S/P/P 20 0 R/Pg 10 0 R/Alt(" + name + ")/K<</Type/MCR/MCID 0/Stm 12 0 R/Pg 10 0 R>>>>");
        return open(raw.table().bytes(), name);
    };
    const JudgedPdf pdf(write(planOf({withForm("a"), withForm("b")})));
    QJsonArray keys;
    for (const QString& form : pdf.having(text("/Subtype"), text("/Form"))) {
        keys.append(pdf.dictionary(form).value(text("/StructParents")));
    }
    const QJsonArray parents = pdf.dictionary(root(pdf).value(text("/ParentTree"))).value(text("/Nums")).toArray();
    ASSERT_EQ(parents.size(), 4);
    EXPECT_TRUE(keys.contains(parents[0]) && keys.contains(parents[2]));
    EXPECT_EQ(pdf.dictionary(parents[1].toArray().at(0)).value(text("/Alt")).toString(), text("u:a"));
    EXPECT_EQ(pdf.dictionary(parents[3].toArray().at(0)).value(text("/Alt")).toString(), text("u:b"));
}

TEST_F(Tags, EmptyCellsStayWithTheirRows) {
    RawPdf raw;
    raw.object(1, "<</Type/Catalog/Pages 2 0 R/StructTreeRoot 20 0 R>>");
    raw.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
    raw.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/StructParents 0");
    raw.page(12, "B", "/Parent 2 0 R/MediaBox[0 0 9 9]/StructParents 1");
    raw.object(20, "<</Type/StructTreeRoot/K[21 0 R]/ParentTree<</Nums[0[24 0 R]1[26 0 R]]>>>>");
    raw.object(21, "<</S/Table/P 20 0 R/K[22 0 R 25 0 R]>>").object(22, "<</S/TR/P 21 0 R/K[23 0 R 24 0 R]>>");
    raw.object(23, "<</S/TD/P 22 0 R>>").object(24, "<</S/TD/P 22 0 R/Pg 10 0 R/K 0>>");
    raw.object(25, "<</S/TR/P 21 0 R/K[26 0 R]>>").object(26, "<</S/TD/P 25 0 R/Pg 12 0 R/K 0>>");
    const JudgedPdf pdf(part(open(raw.table().bytes()), {0}));
    const QStringList rows = pdf.having(text("/S"), text("/TR"));
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(pdf.dictionary(rows[0]).value(text("/K")).toArray().size(), 2);
    EXPECT_EQ(pdf.having(text("/S"), text("/TD")).size(), 2);
}

TEST_F(Tags, LoopsAndMissingPartsAreSurvived) {
    RawPdf raw;
    raw.object(1, "<</Type/Catalog/Pages 2 0 R/StructTreeRoot 20 0 R>>");
    raw.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
    raw.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/StructParents 0").page(12, "B");
    raw.object(20, "<</Type/StructTreeRoot/K[21 0 R 99 0 R]/ParentTree 25 0 R>>");
    raw.object(21, "<</S/Div/P 22 0 R/K[22 0 R 21 0 R 7]>>").object(22, "<</S/Div/P 21 0 R/Pg 10 0 R/K[21 0 R 0]>>");
    raw.object(25, "<</Kids[25 0 R]/Nums[0[22 0 R 99 0 R null]]>>");
    const auto source = open(raw.table().bytes());
    EXPECT_EQ(JudgedPdf(part(source, {0, 0})).pages().size(), 2);
    EXPECT_EQ(JudgedPdf(write(planOf({source, source}))).pages().size(), 4);
}

/// A paragraph beside cells that share what is below them: at each of five levels a list names one cell a hundred
/// times.
std::string sharingPdf() {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/StructTreeRoot 20 0 R>>");
    pdf.object(2, "<</Type/Pages/Count 2/Kids[6 0 R 8 0 R]>>");
    pdf.page(6, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/StructParents 0").page(8, "B", "/Parent 2 0 R/MediaBox[0 0 9 9]");
    pdf.object(20, "<</K 21 0 R/ParentTree<</Nums[0[22 0 R]]>>>>").object(21, "<</S/Document/P 20 0 R/K 23 0 R>>");
    pdf.object(22, "<</S/P/P 21 0 R/K 0/Pg 6 0 R>>");
    for (int level = 0; level < 5; ++level) {
        std::string cells;
        for (int i = 0; i < 100; ++i) cells += std::to_string(40 + level) + " 0 R ";
        pdf.object(23 + level, "[" + (level == 0 ? "22 0 R " + cells : cells) + "]");
        const std::string below = level < 4 ? "/K " + std::to_string(24 + level) + " 0 R" : "";
        pdf.object(40 + level, "<</S/TD/P 21 0 R" + below + ">>");
    }
    return pdf.table().bytes();
}

TEST_F(Tags, ElementsThatShareTheirKidsAreReadInBoundedTime) {
    const auto source = open(sharingPdf(), "a");
    DocumentPlan plan;
    plan.pages = pagesOf(source, {0});
    const JudgedPdf pdf(write(plan));
    EXPECT_EQ(pdf.having(text("/S"), text("/P")).size(), 1);
    const auto documents = pdf.having(text("/S"), text("/Document"));
    ASSERT_EQ(documents.size(), 1);
    EXPECT_LE(pdf.dictionary(documents.first()).value(text("/K")).toArray().size(), 6);
}

/// A paragraph of the type c, and a root with these entries.
RawPdf mappedPdf(const std::string& maps) {
    RawPdf pdf = beginPdf("/StructTreeRoot 30 0 R", {"/StructParents 0"});
    pdf.object(30, "<</K 31 0 R/ParentTree<</Nums[0[31 0 R]]>>" + maps + ">>");
    return pdf.object(31, "<</S/c/P 30 0 R/Pg 10 0 R/K 0>>");
}

TEST_F(Tags, ATypeThatIsExplainedOftenMeansWhatIsSaidLast) {
    constexpr int count = 30000;
    std::string roles;
    for (int i = 0; i < count; ++i) roles += "/c/d" + std::to_string(i);
    const auto source = open(mappedPdf("/RoleMap<<" + roles + "/c/P>>").table().bytes());
    const auto other = open(mappedPdf("/RoleMap<</c/H1>>").table().bytes(), "other");
    const JudgedPdf pdf(writeSoon(planOf({other, source})));
    const QJsonObject map = pdf.dictionary(root(pdf).value(text("/RoleMap")));
    EXPECT_EQ(map.keys(), (QStringList{text("/c"), text("/c-2")}));
    EXPECT_EQ(map.value(text("/c-2")).toString(), text("/P"));
    EXPECT_EQ(tagLines(pdf), (Strings{"c@1", "c-2@2"}));
}

TEST_F(Tags, AClassOfManyNamesIsComparedOnce) {
    constexpr int count = 2000;
    std::string classes;
    for (int i = 0; i < count; ++i) classes += "/c" + std::to_string(i) + " 32 0 R";
    RawPdf raw = mappedPdf("/ClassMap<<" + classes + ">>");
    std::string numbers;
    for (int i = 0; i < 100000; ++i) numbers += "1 ";
    const std::string bytes = raw.object(32, "<</O/Layout/X[" + numbers + "]>>").table().bytes();
    const auto other = open(mappedPdf("/ClassMap<</c1<</O/Layout>>>>").table().bytes(), "other");
    const std::string file = writeSoon(planOf({other, open(bytes), open(bytes + "\n", "again")}));
    EXPECT_LT(contentOf(file).size(), bytes.size());
    EXPECT_EQ(pdfKeys(JudgedPdf(file), "/ClassMap"), count + 1);
}

TEST_F(Tags, ElementsThatShareTheirListOfKidsAreWrittenOnce) {
    constexpr int count = 3000;
    RawPdf raw = beginPdf("/StructTreeRoot 30 0 R", {"/StructParents 0", ""});
    std::string kids;
    for (int i = 40; i < 40 + count; ++i) {
        kids += std::to_string(i) + " 0 R ";
        raw.object(i, "<</S/P/P 31 0 R/K 32 0 R/Pg 10 0 R>>");
    }
    raw.object(30, "<</K 31 0 R/ParentTree<</Nums[0 32 0 R]>>>>").object(31, "<</S/Document/P 30 0 R/K 32 0 R>>");
    const std::string bytes = raw.object(32, "[" + kids + "]").table().bytes();
    const auto source = open(bytes);
    for (const std::vector<std::uint32_t>& pages : {std::vector<std::uint32_t>{0}, {0, 1, 0, 1}}) {
        DocumentPlan plan;
        plan.pages = pagesOf(source, pages);
        const std::string file = writeSoon(plan);
        EXPECT_LT(contentOf(file).size(), 2 * bytes.size());
        EXPECT_LE(JudgedPdf(file).having(text("/S"), text("/P")).size(), 2 * count);
    }
}

}  // namespace
}  // namespace quillon::pdf
