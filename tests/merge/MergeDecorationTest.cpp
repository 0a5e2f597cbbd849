// What a merge paints on the pages of its output.

#include "decoration/MyPdfDocument.h"
#include "decoration/Utility.h"
#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"

#include <QString>

namespace quillon::test {
namespace {

class MergeDecoration : public MergeTest {
protected:
    void SetUp() override {
        settings_.prefix = QStringLiteral("Page");
        settings_.begin = 1;
        settings_.offset = 1;
        settings_.waterMarkContent = QStringLiteral("Draft");
    }
    void TearDown() override {
        Utility::resetShouldAddwaterMark();
        Utility::setShouldaddPageNumber(false);
    }
    /// Runs another job for the same list. The texts of the pages, with a bar between them, the words of each in the
    /// order that the reader finds best.
    std::string mergedAgain() {
        MergeOperation again(list_, urlOf(target()), settings_, owner_);
        runHere(again);
        return texts();
    }
    [[nodiscard]] std::string texts() const {
        EXPECT_EQ(qpdfProblems(target()), "");
        std::string all;
        for (const auto& page : pageMarks(target())) {
            if (!all.empty()) all += '|';
            all += QString::fromStdString(page).simplified().toStdString();
        }
        return all;
    }
};

TEST_F(MergeDecoration, NumbersRunThroughAllInputs) {
    settings_.addPageNumber = true;
    add("A", 2);
    add("B", 1, MergeMethodPart, QStringLiteral("1,1"));
    add("C", 1, MergeMethodRepeat);
    EXPECT_EQ(mergedAgain(), "A1 Page 1|A2 Page 2|B1 Page 3|B1 Page 4|C1 Page 5");
}

TEST_F(MergeDecoration, NumbersFollowTheOrderOfAWeave) {
    settings_.addPageNumber = true;
    add("A", 3, MergeMethodCross, QStringLiteral("1"));
    add("B", 3, MergeMethodCrossReverse, QStringLiteral("1"));
    EXPECT_EQ(mergedAgain(), "A1 Page 1|B3 Page 2|A2 Page 3|B2 Page 4|A3 Page 5|B1 Page 6");
}

TEST_F(MergeDecoration, APaddingPageOfAFileHasNoDecorationAndLeavesNoGapInTheNumbers) {
    settings_.addPageNumber = true;
    settings_.addWaterMark = true;
    settings_.addPage = true;
    settings_.addedPage = write("Pad", PdfFixture("Pad", 1));
    add("A", 1);
    add("B", 1);
    EXPECT_EQ(mergedAgain(), "Draft A1 Page 1|Pad1|Draft B1 Page 2");
}

TEST_F(MergeDecoration, ABlankPaddingPageIsDecoratedLikeAnyOther) {
    settings_.addPageNumber = true;
    settings_.addWaterMark = true;
    settings_.addPage = true;
    settings_.addBlankPage = true;
    add("A", 1);
    add("B", 1);
    EXPECT_EQ(mergedAgain(), "Draft A1 Page 1|Page 2 Draft|Draft B1 Page 3");
}

TEST_F(MergeDecoration, EveryMergeStartsAtItsOwnNumber) {
    settings_.addPageNumber = true;
    add("A", 2);
    EXPECT_EQ(mergedAgain(), "A1 Page 1|A2 Page 2");
    EXPECT_EQ(mergedAgain(), "A1 Page 1|A2 Page 2");
    settings_.begin = 10;
    settings_.offset = 5;
    EXPECT_EQ(mergedAgain(), "A1 Page 10|A2 Page 15");
}

TEST_F(MergeDecoration, AWatermarkThatIsSwitchedOffIsGoneInTheNextMerge) {
    settings_.addWaterMark = true;
    add("A", 1);
    EXPECT_EQ(mergedAgain(), "Draft A1");
    settings_.addWaterMark = false;
    EXPECT_EQ(mergedAgain(), "A1");
}

TEST_F(MergeDecoration, NumbersThatAreSwitchedOffAreGoneInTheNextMerge) {
    settings_.addPageNumber = true;
    add("A", 1);
    EXPECT_EQ(mergedAgain(), "A1 Page 1");
    settings_.addPageNumber = false;
    EXPECT_EQ(mergedAgain(), "A1");
}

TEST_F(MergeDecoration, TheOlderPathDecoratesToo) {
    settings_.addPageNumber = true;
    settings_.addWaterMark = true;
    const auto document = MyPdfDocument::initWithURL(write("A", PdfFixture("A", 2)));
    ASSERT_NE(document, nullptr);
    job().refreshSettings();
    job().writePDF(document, {});
    EXPECT_EQ(texts(), "Draft A1 Page 1|Draft A2 Page 2");
}

TEST_F(MergeDecoration, ProtectedOutputIsDecoratedBeforeItIsProtected) {
    settings_.addPageNumber = true;
    settings_.addWaterMark = true;
    settings_.ownerEncrypt = true;
    settings_.ownerPassword = QStringLiteral("o");
    settings_.copyAllowed = true;
    add("A", 1);
    EXPECT_EQ(mergedAgain(), "Draft A1 Page 1");
}

}  // namespace
}  // namespace quillon::test
