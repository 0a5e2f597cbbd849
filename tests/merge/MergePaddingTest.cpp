// When the job pads the output to an even page count, and with what.

#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"

namespace quillon::test {
namespace {

class MergePadding : public MergeTest {
protected:
    void SetUp() override {
        settings_.addPage = true;
        settings_.addBlankPage = true;
    }
};

TEST_F(MergePadding, ABlankPageEvensOutAnOddInput) {
    add("A", 3);
    add("B", 2);
    EXPECT_EQ(merged(), "A1 A2 A3 - B1 B2");
}

TEST_F(MergePadding, EveryInputThatIsPaddedForStartsOnAnOddPage) {
    add("A", 1);
    add("B", 1);
    add("C", 2);
    add("D", 1);
    EXPECT_EQ(merged(), "A1 - B1 - C1 C2 D1");
}

TEST_F(MergePadding, AnEvenOutputIsNotPadded) {
    add("A", 2);
    add("B", 1);
    EXPECT_EQ(merged(), "A1 A2 B1");
}

TEST_F(MergePadding, TheEndIsNotPadded) {
    add("A", 1);
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergePadding, IsLeftOutWhenTheSettingIsOff) {
    settings_.addPage = false;
    add("A", 3);
    add("B", 2);
    EXPECT_EQ(merged(), "A1 A2 A3 B1 B2");
}

TEST_F(MergePadding, TheFirstPageOfAFileCanPad) {
    settings_.addBlankPage = false;
    settings_.addedPage = write("S", PdfFixture("S", 2));
    add("A", 1);
    add("B", 1);
    EXPECT_EQ(merged(), "A1 S1 B1");
}

TEST_F(MergePadding, APaddingFileThatDoesNotOpenPadsNothing) {
    settings_.addBlankPage = false;
    settings_.addedPage = urlOf(dir_.file("missing.pdf"));
    add("A", 1);
    add("B", 1);
    EXPECT_EQ(merged(), "A1 B1");
}

TEST_F(MergePadding, AnAbsentPaddingFilePadsNothing) {
    settings_.addBlankPage = false;
    add("A", 1);
    add("B", 1);
    EXPECT_EQ(merged(), "A1 B1");
}

TEST_F(MergePadding, StandsInFrontOfAPart) {
    add("A", 1);
    add("B", 3, MergeMethodPart, QStringLiteral("2"));
    EXPECT_EQ(merged(), "A1 - B2");
}

TEST_F(MergePadding, DoesNotStandInFrontOfAPartThatComesFirst) {
    add("B", 3, MergeMethodPart, QStringLiteral("2"));
    EXPECT_EQ(merged(), "B2");
}

TEST_F(MergePadding, DoesNotStandInFrontOfAPicture) {
    add("A", 1);
    addPicture();
    EXPECT_EQ(merged(), "A1 -");
    EXPECT_EQ(pageSizes(target()), (std::vector<std::string>{"612x792", "10x10"}));
}

TEST_F(MergePadding, DoesNotStandInFrontOfARepeatBehindAWhole) {
    add("A", 1);
    add("R", 1, MergeMethodRepeat);
    EXPECT_EQ(merged(), "A1 R1");
}

TEST_F(MergePadding, StandsInFrontOfACrossGroupOnceAndNotBetweenItsRounds) {
    add("O", 3);
    add("A", 3, MergeMethodCross, QStringLiteral("1"));
    add("B", 2, MergeMethodCross, QStringLiteral("1"));
    EXPECT_EQ(merged(), "O1 O2 O3 - A1 B1 A2 B2 A3");
}

TEST_F(MergePadding, StandsInFrontOfALoneCross) {
    add("O", 1);
    add("A", 2, MergeMethodCrossReverse, QStringLiteral("1"));
    EXPECT_EQ(merged(), "O1 - A2 A1");
}

TEST_F(MergePadding, CountsThePagesThatAnInputReallyGave) {
    add("A", 1);
    addMissing();
    add("B", 1);
    EXPECT_EQ(merged(), "A1 - B1");  // padded for the missing input, so even for the next one
}

}  // namespace
}  // namespace quillon::test
