#include "pdf/read/PageTree.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RawPdf.h"

#include <QJsonArray>

#include <chrono>

namespace quillon::pdf {
namespace {

using test::RawPdf;
using Clock = std::chrono::steady_clock;

const std::string bare = "/MediaBox[0 0 612 792]";

/// A catalog over `tree`, the objects from number 2 on, and pages 20, 22, 24 with the marks one, two, three.
std::string file(const std::vector<std::string>& tree, std::string_view pageEntries = bare) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    int number = 2;
    for (const std::string& node : tree) pdf.object(number++, node);
    pdf.page(20, "one", pageEntries).page(22, "two", pageEntries).page(24, "three", pageEntries);
    return pdf.table().bytes();
}

class PageTreeReading : public EngineTest {};

TEST_F(PageTreeReading, ANestedTreeIsReadInOrder) {
    EXPECT_EQ(marks(file({"<</Type/Pages/Count 3/Kids[3 0 R 24 0 R]>>", "<</Type/Pages/Count 2/Kids[4 0 R 22 0 R]>>",
                          "<</Type/Pages/Count 1/Kids[20 0 R]>>"})),
              (Strings{"one", "two", "three"}));
}

TEST_F(PageTreeReading, AWrongCountDoesNotMatter) {
    for (const std::string_view count : {"/Count 7", "/Count 0", "/Count -1", "/Count 2000000000", "/Count/X", ""}) {
        EXPECT_EQ(marks(file({"<</Type/Pages" + std::string(count) + "/Kids[20 0 R 22 0 R]>>"})),
                  (Strings{"one", "two"}))
            << count;
    }
}

TEST_F(PageTreeReading, AMissingOrWrongTypeDoesNotMatter) {
    EXPECT_EQ(marks(file({"<</Count 3/Kids[3 0 R 24 0 R]>>", "<</Type/Page#73/Kids[20 0 R 22 0 R]>>"})),
              (Strings{"one", "two", "three"}));
    const std::string bytes = RawPdf()
                                  .catalogOf({3})
                                  .object(3, "<<" + bare + "/Contents 4 0 R" + RawPdf::font() + ">>")
                                  .stream(4, {}, RawPdf::content("one"))
                                  .table()
                                  .bytes();
    EXPECT_EQ(marks(bytes), Strings{"one"});
}

TEST_F(PageTreeReading, ALoopEnds) {
    EXPECT_EQ(marks(file({"<</Type/Pages/Count 3/Kids[20 0 R 2 0 R 3 0 R]>>",
                          "<</Type/Pages/Count 1/Kids[2 0 R 22 0 R 3 0 R]>>"})),
              (Strings{"one", "two"}));
}

TEST_F(PageTreeReading, NullsAndOtherThingsAreLeftOut) {
    EXPECT_EQ(marks(file({"<</Type/Pages/Count 2/Kids[null 20 0 R 99 0 R 7(x)[20 0 R]/N 22 0 R]>>"})),
              (Strings{"one", "two"}));
}

TEST_F(PageTreeReading, WhatIsLeftOutIsWarnedOf) {
    const auto source = open(file({"<</Type/Pages/Count 2/Kids[20 0 R 99 0 R]>>"}));
    ASSERT_EQ(source->warnings().size(), 1U);
    EXPECT_TRUE(source->warnings()[0].starts_with(dir.file("in.pdf") + ", object 99")) << source->warnings()[0];
}

TEST_F(PageTreeReading, PagesAndNodesThatStandDirectlyInANodeAreRead) {
    const std::string direct = "<</Type/Page/MediaBox[0 0 612 792]/Contents 23 0 R" + RawPdf::font() + ">>";
    EXPECT_EQ(marks(file({"<</Type/Pages/Count 3/Kids[20 0 R " + direct + "<</Type/Pages/Count 1/Kids[24 0 R]>>]>>"})),
              (Strings{"one", "two", "three"}));
}

TEST_F(PageTreeReading, APageThatStandsThereTwiceIsTwoPages) {
    const auto bytes = file({"<</Type/Pages/Count 3/Kids[20 0 R 22 0 R 20 0 R]>>"});
    EXPECT_EQ(marks(bytes), (Strings{"one", "two", "one"}));
    const test::JudgedPdf out(write(planOf({open(bytes)})));
    EXPECT_NE(out.pages()[0], out.pages()[2]);
}

TEST_F(PageTreeReading, NodesWithoutPagesAreLeftOut) {
    EXPECT_EQ(marks(file({"<</Type/Pages/Count 1/Kids[3 0 R 4 0 R 20 0 R 5 0 R]>>", "<</Type/Pages/Count 0/Kids[]>>",
                          "<</Type/Pages/Count 0/Kids[3 0 R 5 0 R]>>", "<</Type/Pages/Kids 99 0 R>>"})),
              Strings{"one"});
}

TEST_F(PageTreeReading, ATreeOfNoPagesIsADocumentOfNone) {
    const auto source = open(RawPdf().catalogOf({}).table().bytes());
    ASSERT_TRUE(source);
    EXPECT_EQ(source->pageCount(), 0U);
}

TEST_F(PageTreeReading, KidsAndCountsMayBeReferences) {
    EXPECT_EQ(marks(file({"<</Type/Pages/Count 4 0 R/Kids 3 0 R>>", "[20 0 R 22 0 R]", "2"})), (Strings{"one", "two"}));
}

TEST_F(PageTreeReading, AttributesComeFromTheNearestNodeThatHasThem) {
    const std::string tree =
        "<</Type/Pages/Count 3/MediaBox[0 0 100 100]/CropBox[10 10 90 90]/Rotate 90/Kids[3 0 R 24 0 R]/Resources" +
        RawPdf::font().substr(10) + ">>";
    const std::string node =
        "<</Type/Pages/Parent 2 0 R/Count 2/MediaBox[0 0 200 200]/Rotate 180/Kids[20 0 R 22 0 R]>>";
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(2, tree).object(3, node);
    pdf.object(20, "<</Type/Page/Parent 3 0 R/Contents 21 0 R>>").stream(21, {}, RawPdf::content("one"));
    pdf.object(22, "<</Type/Page/Parent 3 0 R/MediaBox[0 0 300 300]/Rotate 0/Contents 21 0 R>>");
    pdf.object(24, "<</Type/Page/Parent 2 0 R/Contents 21 0 R>>");
    const auto source = open(pdf.table().bytes());
    SourceAccess access(*source);
    const auto& pages = access.document()->pages().pages();
    ASSERT_EQ(pages.size(), 3U);
    const std::vector<double> widths{200, 300, 100};
    const std::vector<int> rotations{180, 0, 90};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(access.document()->box(pages[i], InheritedAttribute::MediaBox)->right, widths[i]);
        EXPECT_EQ(access.document()->box(pages[i], InheritedAttribute::CropBox)->left, 10);
        EXPECT_EQ(access.document()->rotation(pages[i]), rotations[i]);
    }
}

TEST_F(PageTreeReading, InheritedAttributesAreWrittenWithThePages) {
    const std::string tree = "<</Type/Pages/Count 1/MediaBox[0 0 100 200]/CropBox[10 10 90 90]/Kids[3 0 R]/Resources" +
                             RawPdf::font().substr(10) + ">>";
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(2, tree);
    pdf.object(3, "<</Type/Pages/Parent 2 0 R/Count 1/Rotate 270/Kids[20 0 R]>>");
    pdf.object(20, "<</Type/Page/Parent 3 0 R/Contents 21 0 R>>").stream(21, {}, RawPdf::content("one"));
    const std::string path = write(planOf({open(pdf.table().bytes())}));
    EXPECT_EQ(test::pageMarks(path), Strings{"one"});
    const test::JudgedPdf out(path);
    const QJsonObject page = out.dictionary(out.pages()[0]);
    EXPECT_EQ(page[QStringLiteral("/MediaBox")].toArray(), (QJsonArray{0, 0, 100, 200}));
    EXPECT_EQ(page[QStringLiteral("/CropBox")].toArray(), (QJsonArray{10, 10, 90, 90}));
    EXPECT_EQ(page[QStringLiteral("/Rotate")].toInt(), 270);
}

TEST_F(PageTreeReading, BoxesThatAreNoneAreNone) {
    const auto boxOf = [this](const std::string& entry) {
        const auto source = open(file({"<</Type/Pages/Count 1/Kids[20 0 R]>>"}, entry), "box.pdf");
        SourceAccess access(*source);
        return access.document()->box(access.document()->pages().pages()[0], InheritedAttribute::MediaBox);
    };
    for (const std::string entry : {"", "/MediaBox[0 0 0 0]", "/MediaBox[0 0 100]", "/MediaBox(x)",
                                    "/MediaBox[0 0/A 5]", "/MediaBox[5 5 5 100]"}) {
        EXPECT_FALSE(boxOf(entry)) << entry;
    }
    const auto turned = boxOf("/MediaBox[100 200 0.5 -10]");
    ASSERT_TRUE(turned);
    EXPECT_EQ(turned->left, 0.5);
    EXPECT_EQ(turned->bottom, -10);
    EXPECT_EQ(turned->right, 100);
    EXPECT_EQ(turned->top, 200);
}

TEST_F(PageTreeReading, RotationsAreNormalised) {
    const auto rotationOf = [this](const std::string& entry) {
        const auto source = open(file({"<</Type/Pages/Count 1/Kids[20 0 R]>>"}, bare + entry), "turned.pdf");
        SourceAccess access(*source);
        return access.document()->rotation(access.document()->pages().pages()[0]);
    };
    for (const auto& [entry, degrees] : std::initializer_list<std::pair<std::string, int>>{{"", 0},
                                                                                           {"/Rotate 90", 90},
                                                                                           {"/Rotate -90", 270},
                                                                                           {"/Rotate 450", 90},
                                                                                           {"/Rotate 45", 0},
                                                                                           {"/Rotate(x)", 0}}) {
        EXPECT_EQ(rotationOf(entry), degrees) << entry;
    }
}

std::string largeTree(int pages, int count, const std::string& extraKid = {}) {
    std::string kids;
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    for (int i = 0; i < pages; ++i) {
        pdf.object(10 + i, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(i % 500 + 1) + " 9]>>");
        kids += std::to_string(10 + i) + " 0 R ";
    }
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + extraKid + "]>>");
    pdf.object(3, "<</Type/Pages/Count 2/Kids[20 0 R 21 0 R]>>");
    return pdf.table().bytes();
}

TEST_F(PageTreeReading, AFlatTreeOfAHundredThousandPagesOpensQuickly) {
    const std::string bytes = largeTree(100'000, 100'000);
    const auto begin = Clock::now();
    const auto source = open(bytes);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->pageCount(), 100'000U);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(2));
    EXPECT_EQ(source->warnings(), Strings());
}

TEST_F(PageTreeReading, ALargeTreeWhoseCountsLieIsWalked) {
    EXPECT_EQ(open(largeTree(1000, 999))->pageCount(), 1000U);
    // Its count fits the number of its kids, but one of them is a node with two pages.
    EXPECT_EQ(open(largeTree(1000, 1002, "3 0 R"))->pageCount(), 1002U);
    EXPECT_EQ(open(largeTree(1000, 1001, "99999 0 R"))->pageCount(), 1000U);
}

TEST_F(PageTreeReading, ATreeWhoseCountsAreThoseOfKidsIsWalked) {
    constexpr int kids = 300;
    for (const int node : {0, kids - 1}) {
        std::string list;
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
        for (int i = 0; i < kids; ++i) {
            list += std::to_string(10 + i) + " 0 R ";
            if (i == node) {
                pdf.object(10 + i, "<</Type/Pages/Parent 2 0 R/Count 2/Kids[500 0 R 501 0 R]>>");
            } else {
                pdf.page(10 + i, "one", bare);
            }
        }
        pdf.page(500, "two", bare).page(501, "three", bare);
        pdf.object(2, "<</Type/Pages/Count " + std::to_string(kids) + "/Kids[" + list + "]>>");
        const auto source = open(pdf.table().bytes());
        ASSERT_TRUE(source);
        EXPECT_EQ(source->pageCount(), kids + 1U) << node;
    }
}

TEST_F(PageTreeReading, ADeepTreeDoesNotExhaustTheStack) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 10 0 R>>");
    for (int i = 10; i < 50'000; ++i) pdf.object(i, "<</Type/Pages/Count 1/Kids[" + std::to_string(i + 1) + " 0 R]>>");
    pdf.page(50'000, "one", bare);
    EXPECT_EQ(open(pdf.table().bytes())->pageCount(), 1U);
}

}  // namespace
}  // namespace quillon::pdf
