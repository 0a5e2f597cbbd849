// What the job makes of range texts.

#include "tests/merge/MergeTest.h"

namespace quillon::test {
namespace {

class MergePart : public MergeTest {
protected:
    std::string partOfTen(const char* text) {
        add("A", 10, MergeMethodPart, QString::fromLatin1(text));
        return merged();
    }
};

TEST_F(MergePart, TakesTheNamedPages) {
    EXPECT_EQ(partOfTen("1-3,5"), "A1 A2 A3 A5");
}

TEST_F(MergePart, LowersTheEnd) {
    EXPECT_EQ(partOfTen("8-20"), "A8 A9 A10");
}

TEST_F(MergePart, AnEmptyStartIsTheFirstPage) {
    EXPECT_EQ(partOfTen("-4"), "A1 A2 A3 A4");
}

TEST_F(MergePart, AnEmptyEndNamesNothing) {
    EXPECT_EQ(partOfTen("4-"), "no file");
}

TEST_F(MergePart, AReversedRangeNamesNothing) {
    EXPECT_EQ(partOfTen("5-3"), "no file");
}

TEST_F(MergePart, LowersAPage) {
    EXPECT_EQ(partOfTen("12"), "A10");
}

TEST_F(MergePart, SkipsEmptyParts) {
    EXPECT_EQ(partOfTen("3,,7"), "A3 A7");
}

TEST_F(MergePart, PageZeroIsNoPageAndDoesNotDisturbTheOthers) {
    EXPECT_EQ(partOfTen("2,0,1"), "A2 A1");
}

TEST_F(MergePart, TheEmptyTextNamesNothing) {
    EXPECT_EQ(partOfTen(""), "no file");
}

TEST_F(MergePart, TheFirstDashDivides) {
    EXPECT_EQ(partOfTen("2-5-9"), "A2 A3 A4 A5");
}

TEST_F(MergePart, TakesAPageTwice) {
    EXPECT_EQ(partOfTen("1,1"), "A1 A1");
}

TEST_F(MergePart, AcceptsWhiteSpace) {
    EXPECT_EQ(partOfTen(" 4,4 - 6"), "A4 A4 A5 A6");
}

TEST_F(MergePart, AnAbsentTextNamesNothing) {
    add("A", 3, MergeMethodPart);
    EXPECT_EQ(merged(), "no file");
}

TEST_F(MergePart, IsAppendedToWhatIsThere) {
    add("A", 2);
    add("B", 5, MergeMethodPart, QStringLiteral("4-5,1"));
    add("C", 1);
    EXPECT_EQ(merged(), "A1 A2 B4 B5 B1 C1");
}

TEST_F(MergePart, OfAFileThatDoesNotOpenContributesNothing) {
    add("A", 1);
    addMissing(MergeMethodPart, QStringLiteral("1-1000000000,7,0,-3"));
    add("B", 1);
    EXPECT_EQ(merged(), "A1 B1");
}

TEST_F(MergePart, CancellationIsSeenBetweenParts) {
    // The job is stopped when it asks for padding, which is before the first part.
    struct Stopping : PlainSettings {
        MergeOperation* job = nullptr;
        [[nodiscard]] bool isAddPage() const override {
            job->cancel();
            return false;
        }
    } settings;
    add("A", 2);
    add("B", 3, MergeMethodPart, QStringLiteral("1-3,2"));
    MergeOperation job(list_, urlOf(target()), settings, owner_);
    settings.job = &job;
    runHere(job);
    EXPECT_EQ(pages(), "A1 A2");
}

}  // namespace
}  // namespace quillon::test
