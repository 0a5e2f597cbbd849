#include "pdf/join/DestinationJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RawPdf.h"

#include <QJsonArray>

#include <algorithm>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::RawPdf;

class NamedDestinations : public EngineTest {
protected:
    /// Two pages; the first has a link with these entries, the second is what the names `goal` and /old mean;
    /// `value` is an object of its own, which the name `index` means as well.
    std::shared_ptr<Source> input(const std::string& file, const std::string& link = "/A<</S/GoTo/D(goal)>>",
                                  const std::string& value = "[12 0 R/Fit]") const {
        RawPdf pdf;
        pdf.object(
            1, "<</Type/Catalog/Pages 2 0 R/Dests<</old[12 0 R/FitB]>>/Names<</Dests 3 0 R>>" + catalogEntries + ">>");
        pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
        pdf.object(3, "<</Names[(goal)4 0 R(index)6 0 R]>>").object(4, "<</D[12 0 R/Fit]>>").object(6, value);
        pdf.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 99 99]/Annots[5 0 R]").page(12, "B");
        pdf.object(5, "<</Type/Annot/Subtype/Link/Rect[0 0 9 9]" + link + ">>");
        return open(pdf.table().bytes(), file);
    }

    std::string catalogEntries;  // further ones

    /// The page, counted from 0, to which the link of a page leads; -1 when it leads nowhere.
    static qsizetype target(const JudgedPdf& pdf, qsizetype page) {
        const QJsonObject link = pdf.annotations(page).first();
        QJsonValue to = link.value(QStringLiteral("/Dest"));
        if (to.isUndefined()) {
            to = pdf.resolve(link.value(QStringLiteral("/A"))).toObject().value(QStringLiteral("/D"));
        }
        if (to.isString()) {
            const auto name = to.toString();
            const auto names = pdf.resolve(pdf.catalog().value(QStringLiteral("/Names"))).toObject();
            const auto tree = pdf.resolve(names.value(QStringLiteral("/Dests"))).toObject();
            const QJsonArray pairs = tree.value(QStringLiteral("/Names")).toArray();
            to = QJsonValue();
            for (qsizetype i = 0; i + 1 < pairs.size(); i += 2) {
                if (pairs[i].toString() == name) to = pdf.resolve(pairs[i + 1]);
            }
        }
        if (to.isObject()) to = to.toObject().value(QStringLiteral("/D"));
        return pdf.pages().indexOf(to.toArray().first().toString());
    }
};

TEST_F(NamedDestinations, EachInputsLinkLeadsToItsOwnPageThoughTheNamesAreEqual) {
    const JudgedPdf pdf(write(planOf({input("a"), input("b"), input("c")})));
    EXPECT_EQ(target(pdf, 0), 1);
    EXPECT_EQ(target(pdf, 2), 3);
    EXPECT_EQ(target(pdf, 4), 5);
}

TEST_F(NamedDestinations, WhatADestinationBringsAlongIsCopiedWithItsLinks) {
    for (const std::string link : {"/D(goal)", "/D 7 0 R", "% a comment\n/D(goal)"}) {
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Names<</Dests 3 0 R>>>>");
        pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>").object(7, "(goal)");
        pdf.object(3, "<</Names[(goal)4 0 R]>>").object(4, "<</D[12 0 R/Fit]/X<</S/GoTo " + link + ">>>>");
        pdf.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 99 99]").page(12, "B");
        const JudgedPdf judged(write(planOf({input("a"), open(pdf.table().bytes(), "b")})));
        const auto names = judged.dictionary(judged.catalog().value(QStringLiteral("/Names")));
        const auto pairs =
            judged.dictionary(names.value(QStringLiteral("/Dests"))).value(QStringLiteral("/Names")).toArray();
        const auto at = std::ranges::find(pairs, QJsonValue(QStringLiteral("u:goal-2")));
        ASSERT_NE(at, pairs.end()) << link;
        const auto action = judged.dictionary(*(at + 1)).value(QStringLiteral("/X")).toObject();
        EXPECT_EQ(action.value(QStringLiteral("/D")).toString(), QStringLiteral("u:goal-2")) << link;
    }
}

TEST_F(NamedDestinations, EveryFormOfALinkIsRedirected) {
    for (const std::string link : {"/Dest(goal)", "/Dest <676F616C>", "/Dest/old", "/A<</S/GoTo/D/old>>",
                                   "/Contents(/D\\(goal\\))/A<</D(goal)/S/GoTo>>", "/A<</S/GoTo/D(go\\141l)>> % x\n",
                                   "/D#65st(goal)", "/A<</S/GoTo/D(goal)/Next<</S/GoToR/F(x)/D(goal)>>>>"}) {
        const JudgedPdf pdf(write(planOf({input("a"), input("b", link)})));
        EXPECT_EQ(target(pdf, 0), 1) << link;
        EXPECT_EQ(target(pdf, 2), 3) << link;
    }
}

TEST_F(NamedDestinations, NamesOfOtherFilesAndTextsStay) {
    const JudgedPdf pdf(
        write(planOf({input("a"), input("b", "/Contents(/D\\(goal\\) /GoTo)/A<</S/GoToR/F(x)/D(goal)>>")})));
    const QJsonObject link = pdf.annotations(2).first();
    EXPECT_EQ(link.value(QStringLiteral("/Contents")).toString(), QStringLiteral("u:/D(goal) /GoTo"));
    EXPECT_EQ(link.value(QStringLiteral("/A")).toObject().value(QStringLiteral("/D")).toString(),
              QStringLiteral("u:goal"));
}

TEST_F(NamedDestinations, AFileTakenTwiceHasLinksToItsOwnCopies) {
    const auto source = input("a");
    const JudgedPdf pdf(write(planOf({source, source})));
    EXPECT_EQ(target(pdf, 0), 1);
    EXPECT_EQ(target(pdf, 2), 3);
}

TEST_F(NamedDestinations, ALinkToAPageThatWasNotTakenDoesNotLeadToAnotherInput) {
    const auto a = input("a");
    const auto b = input("b");
    DocumentPlan plan = planOf({a});
    const auto part = pagesOf(b, {0});
    plan.pages.insert(plan.pages.end(), part.begin(), part.end());
    const JudgedPdf pdf(write(plan));
    EXPECT_EQ(target(pdf, 0), 1);
    EXPECT_EQ(target(pdf, 2), -1);
}

TEST_F(NamedDestinations, PartsWithoutABaseKeepTheNamesThatTheirLinksUse) {
    DocumentPlan plan;
    plan.pages = pagesOf(input("b"), {1, 0});
    const JudgedPdf pdf(write(plan));
    EXPECT_EQ(target(pdf, 1), 0);
}

TEST_F(NamedDestinations, APageThatIsGivenByItsIndexIsFound) {
    for (const std::string link : {"/Dest[1/Fit]", "/A<</S/GoTo/D[ 1 /XYZ 0 0 0]>>", "/A<</S/GoTo/D[1/Fit]>> % x\n"}) {
        const JudgedPdf pdf(write(planOf({input("a", link), input("b", link)})));
        EXPECT_EQ(target(pdf, 2), 3) << link;
    }
    const JudgedPdf beyond(write(planOf({input("a"), input("b", "/Dest[7/Fit]")})));
    EXPECT_EQ(target(beyond, 2), -1);
}

TEST_F(NamedDestinations, AValueThatLooksLikeAKeyIsNone) {
    const std::string link = "/BS<</S/D/D[3 3]/W 2>>/A<</S/GoTo/D(goal)>>/PA<</S/Thread/D(goal)>>";
    const JudgedPdf pdf(write(planOf({input("a"), input("b", link)})));
    EXPECT_EQ(target(pdf, 2), 3);
    const QJsonObject border = pdf.annotations(2).first().value(QStringLiteral("/BS")).toObject();
    EXPECT_EQ(border.value(QStringLiteral("/S")).toString(), QStringLiteral("/D"));
    EXPECT_EQ(border.value(QStringLiteral("/D")).toArray(), (QJsonArray{3, 3}));
    const QJsonObject other = pdf.annotations(2).first().value(QStringLiteral("/PA")).toObject();
    EXPECT_EQ(other.value(QStringLiteral("/D")).toString(), QStringLiteral("u:goal"));
}

TEST_F(NamedDestinations, KeysOfOtherDictionariesAreTheirOwn) {
    for (const std::string more : {"", " % x\n"}) {
        const std::string link = "/A<</S/GoTo/D(goal)>>/PieceInfo<</Own<</Dest(goal)/D(goal)>>>>" + more;
        const JudgedPdf pdf(write(planOf({input("a"), input("b", link)})));
        EXPECT_EQ(target(pdf, 2), 3);
        const QJsonObject info = pdf.annotations(2).first().value(QStringLiteral("/PieceInfo")).toObject();
        const QJsonObject own = info.value(QStringLiteral("/Own")).toObject();
        EXPECT_EQ(own.value(QStringLiteral("/Dest")).toString(), QStringLiteral("u:goal"));
        EXPECT_EQ(own.value(QStringLiteral("/D")).toString(), QStringLiteral("u:goal"));
    }
}

TEST_F(NamedDestinations, ADestinationThatIsAnObjectOfItsOwnIsRedirected) {
    for (const std::string link : {"/Dest 6 0 R", "/A<</D 6 0 R/S/GoTo>>", "/Dest 6 0 R % x\n"}) {
        for (const std::string value : {"(goal)", "/old", "[1/Fit]", "<</D[1/Fit]>>"}) {
            const JudgedPdf pdf(write(planOf({input("a"), input("b", link, value)})));
            EXPECT_EQ(target(pdf, 2), 3) << link << value;
        }
    }
}

TEST_F(NamedDestinations, ANameStandsForAPageThatIsGivenByItsIndex) {
    for (const std::string value : {"[1/Fit]", "[1 /XYZ 0 9 null]", "<</D[1/Fit]>>"}) {
        const JudgedPdf pdf(write(planOf({input("a"), input("b", "/Dest(index)", value)})));
        EXPECT_EQ(target(pdf, 2), 3) << value;
    }
}

TEST_F(NamedDestinations, TheBaseOpensWhereItDidByAnOldName) {
    catalogEntries = "/OpenAction<</S/GoTo/D/old>>";
    const JudgedPdf pdf(write(planOf({input("a"), input("b")})));
    const QJsonObject action = pdf.catalog().value(QStringLiteral("/OpenAction")).toObject();
    EXPECT_EQ(action.value(QStringLiteral("/D")).toString(), QStringLiteral("u:old"));
}

TEST_F(NamedDestinations, WhatABookmarkDoesNextLeadsToItsOwnInput) {
    const auto b = input("b");
    DocumentPlan plan = planOf({input("a"), b});
    const std::uint32_t opening = std::get<SourcePage>(plan.pages.back().origin).opening;
    plan.keepOutline = false;
    OutlineEntry& entry = plan.outline.emplace_back();
    entry.title = "x";
    entry.action = {b, opening, "<</S/Named/N/Print/Next<</S/GoTo/D(goal)>>>>"};
    const JudgedPdf pdf(write(plan));
    const QJsonObject outline = pdf.dictionary(pdf.catalog().value(QStringLiteral("/Outlines")));
    const QJsonObject node = pdf.dictionary(outline.value(QStringLiteral("/First")));
    const QJsonObject next = node.value(QStringLiteral("/A")).toObject().value(QStringLiteral("/Next")).toObject();
    EXPECT_EQ(next.value(QStringLiteral("/D")).toString(), QStringLiteral("u:goal-2"));
}

}  // namespace
}  // namespace quillon::pdf
