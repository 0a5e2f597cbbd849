#include "pdf/read/Limits.h"
#include "pdf/read/OutlineReader.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/RawPdf.h"

#include <chrono>

namespace quillon::pdf {
namespace {

using test::RawPdf;

class OutlineReading : public EngineTest {
protected:
    /// A file of two pages, objects 10 and 12; `more` are entries of the catalog.
    static RawPdf file(const std::string& more = "/Outlines 3 0 R") {
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R" + more + ">>");
        pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
        pdf.page(10, "A").page(12, "B");
        return pdf;
    }
    /// The outline's root and the single node 4 with these entries.
    static RawPdf node(const std::string& entries, const std::string& more = "/Outlines 3 0 R") {
        RawPdf pdf = file(more);
        pdf.object(3, "<</First 4 0 R/Last 4 0 R/Count 1>>");
        pdf.object(4, "<</Title(t)/Parent 3 0 R" + entries + ">>");
        return pdf;
    }
    std::optional<std::vector<OutlineItem>> read(RawPdf& pdf) const {
        const auto source = open(pdf.table().bytes());
        if (!source) return std::nullopt;
        const SourceAccess access(*source);
        return readOutline(*access.document());
    }
    OutlineItem readNode(RawPdf pdf) const {
        const auto items = read(pdf);
        EXPECT_TRUE(items && items->size() == 1);
        return items && !items->empty() ? items->front() : OutlineItem();
    }
    /// Titles, each with as many dots in front as it is deep.
    static std::string titles(const std::optional<std::vector<OutlineItem>>& items) {
        if (!items) return "none";
        std::string all;
        for (const OutlineItem& item : *items)
            all += (all.empty() ? "" : " ") + std::string(item.depth, '.') + item.title;
        return all;
    }
};

TEST_F(OutlineReading, AFileWithoutOutlineHasNone) {
    RawPdf none = file("");
    EXPECT_EQ(titles(read(none)), "none");
    RawPdf empty = file();
    empty.object(3, "<</Count 0>>");
    EXPECT_EQ(titles(read(empty)), "none");
}

TEST_F(OutlineReading, NodesComeBehindTheirParents) {
    RawPdf pdf = file();
    pdf.object(3, "<</First 4 0 R/Last 6 0 R/Count 2>>");
    pdf.object(4, "<</Title(a)/Next 6 0 R/First 5 0 R/Last 7 0 R/Count 2>>");
    pdf.object(5, "<</Title(b)/Next 7 0 R>>").object(7, "<</Title(c)/First 8 0 R/Count -1>>");
    pdf.object(8, "<</Title(d)>>").object(6, "<</Title(e)>>");
    const auto items = read(pdf);
    ASSERT_EQ(titles(items), "a .b .c ..d e");
    EXPECT_TRUE((*items)[0].open);
    EXPECT_FALSE((*items)[2].open);
}

TEST_F(OutlineReading, AnExplicitDestinationIsAPageAndAView) {
    const auto item = readNode(node("/Dest[12 0 R/XYZ 10 700.5 null]"));
    ASSERT_TRUE(item.destination);
    EXPECT_EQ(item.destination->page, 1U);
    EXPECT_EQ(item.destination->view, "/XYZ 10 700.5 null");
    EXPECT_EQ(item.destination->left, 10);
    EXPECT_EQ(item.destination->top, 700.5);
}

TEST_F(OutlineReading, WhereTheDestinationLeadsNowhereTheActionCounts) {
    for (const std::string destination : {"98 0 R", "[98 0 R/Fit]", "(unknown)", "/unknown", "[7/Fit]", "null"}) {
        const auto linked = readNode(node("/Dest " + destination + "/A<</S/URI/URI(http://example.org)>>"));
        EXPECT_EQ(linked.action, "<</S/URI/URI(http://example.org)>>") << destination;
        const auto led = readNode(node("/Dest " + destination + "/A<</S/GoTo/D[12 0 R/Fit]>>"));
        ASSERT_TRUE(led.destination) << destination;
        EXPECT_EQ(led.destination->page, 1U);
    }
    EXPECT_EQ(readNode(node("/Dest[10 0 R/Fit]/A<</S/URI/URI(http://example.org)>>")).action, "");
}

TEST_F(OutlineReading, EveryKindOfViewIsKept) {
    for (const std::string view : {"/Fit", "/FitH 5", "/FitV 6", "/FitR 1 2 3 4", "/FitB", "/FitBH null"}) {
        const auto item = readNode(node("/Dest[10 0 R " + view + "]"));
        ASSERT_TRUE(item.destination) << view;
        EXPECT_EQ(item.destination->view, view);
    }
}

TEST_F(OutlineReading, APageMayBeGivenByItsNumber) {
    const auto item = readNode(node("/Dest[1/Fit]"));
    ASSERT_TRUE(item.destination);
    EXPECT_EQ(item.destination->page, 1U);
    EXPECT_FALSE(readNode(node("/Dest[2/Fit]")).destination);
    EXPECT_FALSE(readNode(node("/Dest[-1/Fit]")).destination);
}

TEST_F(OutlineReading, AGoToActionIsADestination) {
    const auto item = readNode(node("/A<</S/GoTo/D[12 0 R/Fit]>>"));
    ASSERT_TRUE(item.destination);
    EXPECT_EQ(item.destination->page, 1U);
    EXPECT_EQ(item.action, "");
}

TEST_F(OutlineReading, NamesAreLookedUpInTheTreeAndInTheOldDictionary) {
    const std::string catalog = "/Outlines 3 0 R/Dests<</old<</D[10 0 R/Fit]>>>>/Names<</Dests 20 0 R>>";
    const auto withNames = [&](const std::string& entries) {
        RawPdf pdf = node(entries, catalog);
        pdf.object(20, "<</Kids[21 0 R 20 0 R]>>").object(21, "<</Names[(new)22 0 R]>>").object(22, "[12 0 R/FitB]");
        return readNode(pdf);
    };
    ASSERT_TRUE(withNames("/Dest/old").destination);
    EXPECT_EQ(withNames("/Dest/old").destination->page, 0U);
    ASSERT_TRUE(withNames("/Dest(new)").destination);
    EXPECT_EQ(withNames("/Dest(new)").destination->view, "/FitB");
    EXPECT_TRUE(withNames("/A<</S/GoTo/D(new)>>").destination);
    EXPECT_FALSE(withNames("/Dest(missing)").destination);
}

TEST_F(OutlineReading, OtherActionsAreKeptAsTheyStand) {
    EXPECT_EQ(readNode(node("/A<</S/URI/URI(http://example.org)>>")).action, "<</S/URI/URI(http://example.org)>>");
    RawPdf pdf = node("/A 9 0 R");
    pdf.object(9, "<</S/Launch/F(x.exe)>>");
    EXPECT_EQ(readNode(pdf).action, "9 0 R");
}

TEST_F(OutlineReading, ColourAndStyleAreKept) {
    EXPECT_EQ(readNode(node("/C[1 0 .5]/F 3")).look, "/C[1 0 0.5]/F 3");
    EXPECT_EQ(readNode(node("/C(red)/F/bold")).look, "");
}

TEST_F(OutlineReading, ADestinationThatIsNoneLeadsNowhere) {
    for (const std::string damaged : {"[]", "[null/Fit]", "[99 0 R/Fit]", "[2 0 R/Fit]", "7", "<<>>", "<</D 4 0 R>>"}) {
        EXPECT_FALSE(readNode(node("/Dest" + damaged)).destination) << damaged;
    }
}

TEST_F(OutlineReading, LoopsAreCut) {
    RawPdf pdf = file();
    pdf.object(3, "<</First 4 0 R>>");
    pdf.object(4, "<</Title(a)/Next 5 0 R/First 5 0 R>>");
    pdf.object(5, "<</Title(b)/Next 4 0 R/First 3 0 R>>");
    EXPECT_EQ(titles(read(pdf)), "a .b");
}

TEST_F(OutlineReading, ADamagedNodeEndsItsRow) {
    RawPdf pdf = file();
    pdf.object(3, "<</First 4 0 R/Count 99999999>>");
    pdf.object(4, "<</Title 77/Next 5 0 R/First(x)/Count/many>>").object(5, "[1 2 3]");
    const auto items = read(pdf);
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1U);
    EXPECT_EQ(items->front().title, "");
}

TEST_F(OutlineReading, WhatLiesTooDeepStandsBesideItsParent) {
    RawPdf pdf = file();
    constexpr int nodes = 2000;
    pdf.object(3, "<</First 100 0 R>>");
    for (int i = 0; i < nodes; ++i) {
        pdf.object(100 + i, "<</Title(n)/First " + std::to_string(101 + i) + " 0 R>>");
    }
    const auto items = read(pdf);
    ASSERT_TRUE(items);
    EXPECT_EQ(items->size(), std::size_t{nodes});
    EXPECT_EQ(items->back().depth, limits::outlineDepth);
}

TEST_F(OutlineReading, AHundredThousandNodesAreReadQuickly) {
    RawPdf pdf = file();
    constexpr int nodes = 100'000;
    pdf.object(3, "<</First 100 0 R>>");
    for (int i = 0; i < nodes; ++i) {
        std::string next = i + 1 < nodes ? "/Next " + std::to_string(101 + i) + " 0 R" : "";
        pdf.object(100 + i, "<</Title(Node " + std::to_string(i) + ")/Dest[10 0 R/Fit]" + next + ">>");
    }
    const auto source = open(pdf.table().bytes());
    const SourceAccess access(*source);
    const auto before = std::chrono::steady_clock::now();
    const auto items = readOutline(*access.document());
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
    ASSERT_TRUE(items);
    EXPECT_EQ(items->size(), std::size_t{nodes});
    EXPECT_LT(taken.count(), 10.0);
}

}  // namespace
}  // namespace quillon::pdf
