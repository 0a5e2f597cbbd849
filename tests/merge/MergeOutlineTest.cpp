// How bookmarks are collected.

#include "decoration/MyPdfDocument.h"
#include "platform/pdf/PDFDestination.h"
#include "platform/pdf/PDFOutline.h"
#include "tests/merge/MergeTest.h"

namespace quillon::test {
namespace {

std::shared_ptr<PDFOutline> node(const char* label) {
    auto made = std::make_shared<PDFOutline>();
    made->setLabel(QString::fromLatin1(label));
    return made;
}

/// The labels below a node, the children of each in brackets.
std::string tree(const std::shared_ptr<PDFOutline>& root) {
    if (!root) return "no outline";
    std::string all;
    for (int i = 0; i < root->numberOfChildren(); ++i) {
        const auto child = root->childAtIndex(i);
        if (!all.empty()) all += ' ';
        all += child->label().toStdString();
        if (child->numberOfChildren() > 0) all += '[' + tree(child) + ']';
    }
    return all;
}

class MergeOutline : public MergeTest {
protected:
    void SetUp() override {
        settings_.addBookmark = true;
        settings_.removeExtension = true;
        x_ = document("X", 2);
        auto own = std::make_shared<PDFOutline>();
        own->insertChild(node("x1"), 0);
        own->insertChild(node("x2"), 1);
        x_->setOutlineRoot(own);
        y_ = document("Y", 1);
    }

    std::shared_ptr<MyPdfDocument> document(const std::string& name, int count) const {
        return MyPdfDocument::initWithURL(write(name, PdfFixture(name, count)));
    }

    void addX() { job().addOutline(x_, cacheData(urlOf("/files/X.pdf"))); }
    void addY() { job().addOutline(y_, cacheData(urlOf("/files/Y.pdf"))); }

    [[nodiscard]] std::string outline() { return tree(job().outlineRoot()); }

    [[nodiscard]] std::string nameOf(const char* path) { return job().getFileName(urlOf(path)).toStdString(); }

    std::shared_ptr<MyPdfDocument> x_;  // with bookmarks of its own
    std::shared_ptr<MyPdfDocument> y_;  // without
};

TEST_F(MergeOutline, OwnBookmarksOfTheFirstInputAreTheTopLevelAndLaterInputsStandBeside) {
    settings_.keepOriginalBookmark = true;
    settings_.useFileName = true;
    addX();
    addY();
    EXPECT_EQ(outline(), "x1 x2 Y");
}

TEST_F(MergeOutline, WithoutFileNamesOnlyOwnBookmarksAreKept) {
    settings_.keepOriginalBookmark = true;
    addX();
    addY();
    EXPECT_EQ(outline(), "x1 x2");
}

TEST_F(MergeOutline, WithoutOwnBookmarksEveryInputHasANode) {
    settings_.useFileName = true;
    addX();
    addY();
    EXPECT_EQ(outline(), "X Y");
}

TEST_F(MergeOutline, WithNeitherThereIsNoOutline) {
    addX();
    addY();
    EXPECT_EQ(outline(), "no outline");
}

TEST_F(MergeOutline, OwnBookmarksOfALaterInputHangBeneathItsName) {
    settings_.keepOriginalBookmark = true;
    settings_.useFileName = true;
    addY();
    addX();
    EXPECT_EQ(outline(), "Y X[x1 x2]");
}

TEST_F(MergeOutline, WithoutFileNamesALaterInputWithBookmarksIsStillTheFirstWithAny) {
    settings_.keepOriginalBookmark = true;
    addY();
    addX();
    EXPECT_EQ(outline(), "x1 x2");
}

TEST_F(MergeOutline, SwitchedOffItMakesNone) {
    settings_.addBookmark = false;
    settings_.keepOriginalBookmark = true;
    settings_.useFileName = true;
    addX();
    addY();
    EXPECT_EQ(outline(), "no outline");
}

TEST_F(MergeOutline, ANodeLeadsToTheTopOfTheFirstPage) {
    settings_.useFileName = true;
    addY();
    const auto destination = job().outlineRoot()->childAtIndex(0)->destination();
    ASSERT_NE(destination, nullptr);
    EXPECT_EQ(destination->page(), y_->pageAtIndex(0));
    EXPECT_EQ(destination->point(), QPointF(0, 792));
}

TEST_F(MergeOutline, TheTopIsTheHeightOfTheMediaBox) {
    const auto tall = MyPdfDocument::initWithURL(write("T", PdfFixture("T", 1).size(0, 100, 1234)));
    const auto made = job().getOutline(QStringLiteral("label"), tall->pageAtIndex(0));
    EXPECT_EQ(made->label(), QStringLiteral("label"));
    EXPECT_EQ(made->destination()->point(), QPointF(0, 1234));
    EXPECT_EQ(made->numberOfChildren(), 0);
}

TEST_F(MergeOutline, WithoutAPageANodeLeadsToTheOrigin) {
    const auto made = job().getOutline(QStringLiteral("label"), nullptr);
    ASSERT_NE(made->destination(), nullptr);
    EXPECT_EQ(made->destination()->page(), nullptr);
    EXPECT_EQ(made->destination()->point(), QPointF(0, 0));
}

TEST_F(MergeOutline, AnInputThatDoesNotOpenHasANodeThatLeadsNowhere) {
    settings_.useFileName = true;
    job().addOutline(nullptr, cacheData(urlOf("/files/missing.pdf")));
    ASSERT_EQ(outline(), "missing");
    EXPECT_EQ(job().outlineRoot()->childAtIndex(0)->destination()->page(), nullptr);
}

TEST_F(MergeOutline, ALabelIsTheNameOfTheFile) {
    settings_.removeExtension = false;
    EXPECT_EQ(nameOf("/files/a.pdf"), "a.pdf");
}

TEST_F(MergeOutline, OnlyTheLastEndingIsRemoved) {
    EXPECT_EQ(nameOf("/files/a.pdf"), "a");
    EXPECT_EQ(nameOf("/files/a.b.pdf"), "a.b");
}

TEST_F(MergeOutline, ANameWithoutAnEndingStaysAsItIs) {
    EXPECT_EQ(nameOf("/files/report"), "report");
    EXPECT_EQ(nameOf("/files.d/report"), "report");
    EXPECT_EQ(nameOf("/files/.hidden"), ".hidden");
}

TEST_F(MergeOutline, CharactersThatAUrlEscapesStayEscaped) {
    EXPECT_EQ(nameOf("/files/Annual report.pdf"), "Annual%20report");
    EXPECT_EQ(nameOf("/files/50%.pdf"), "50%25");
    EXPECT_EQ(nameOf("/files/a#b?.pdf"), "a%23b%3F");
    EXPECT_EQ(nameOf("/files/\xc3\xa9.pdf"), "%C3%A9");
    settings_.removeExtension = false;
    EXPECT_EQ(nameOf("/files/Annual report.pdf"), "Annual%20report.pdf");
}

TEST_F(MergeOutline, AMergeGivesEveryWholeInputANode) {
    settings_.useFileName = true;
    add("A", 1);
    add("B", 1);
    run();
    EXPECT_EQ(outline(), "A B");
}

TEST_F(MergeOutline, OnlyWholeEntriesTakePart) {
    settings_.useFileName = true;
    add("A", 1);
    add("R", 1, MergeMethodRepeat);
    add("P", 1, MergeMethodPart, QStringLiteral("1"));
    addPicture();
    add("B", 1);
    add("C", 1, MergeMethodCross, QStringLiteral("1"));
    run();
    EXPECT_EQ(outline(), "A B");
}

TEST_F(MergeOutline, ARepeatThatComesFirstHasItsNode) {
    settings_.useFileName = true;
    add("R", 1, MergeMethodRepeat);
    add("A", 1);
    run();
    EXPECT_EQ(outline(), "R A");
}

TEST_F(MergeOutline, ANodeOfALaterInputLeadsToThePageThatWasTaken) {
    settings_.useFileName = true;
    add("A", 2);
    add("B", 1);
    run();
    const auto destination = job().outlineRoot()->childAtIndex(1)->destination();
    ASSERT_NE(destination->page(), nullptr);
    EXPECT_EQ(destination->point(), QPointF(0, 792));
}

}  // namespace
}  // namespace quillon::test
