// How Cross, Cross reverse and Repeat entries are woven.

#include "decoration/MyPdfDocument.h"
#include "platform/jobs/MainThread.h"
#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"

#include <algorithm>
#include <string>
#include <vector>

namespace quillon::test {
namespace {

class MergeInterleave : public MergeTest {
protected:
    cacheData& cross(const std::string& name, int count, const char* step) {
        return add(name, count, MergeMethodCross, QString::fromLatin1(step));
    }
    cacheData& reverse(const std::string& name, int count, const char* step) {
        return add(name, count, MergeMethodCrossReverse, QString::fromLatin1(step));
    }
    cacheData& repeat(const std::string& name, int count) { return add(name, count, MergeMethodRepeat); }

    /// Stops the job from the main thread some time after it has begun: the rounds go on meanwhile.
    void stopOnTheWay() {
        owner_.onStart = [this] { stopAfter(200); };
    }

private:
    void stopAfter(int calls) {
        if (calls == 0) {
            job().cancel();
        } else {
            MainThread::performOnMainThread([this, calls] { stopAfter(calls - 1); }, false);
        }
    }
};

TEST_F(MergeInterleave, WeavesScansAndASeparator) {
    cross("A", 5, "2");
    reverse("B", 3, "1");
    repeat("R", 1);
    EXPECT_EQ(merged(), "A1 B3 R1 A3 B2 R1 A5 B1 R1");
}

TEST_F(MergeInterleave, ACrossPageBehindARepeatStandsInFrontOfIt) {
    cross("A", 2, "1");
    repeat("R", 1);
    cross("B", 2, "1");
    EXPECT_EQ(merged(), "A1 B1 R1 A2 B2 R1");
}

TEST_F(MergeInterleave, ALoneCrossTakesEveryStep) {
    cross("A", 5, "2");
    EXPECT_EQ(merged(), "A1 A3 A5");
}

TEST_F(MergeInterleave, ALoneCrossReverseTakesEveryStepFromTheBack) {
    reverse("A", 5, "2");
    EXPECT_EQ(merged(), "A5 A3 A1");
}

TEST_F(MergeInterleave, ALoneCrossOfAnEvenDocument) {
    cross("A", 6, "4");
    EXPECT_EQ(merged(), "A1 A5");
}

TEST_F(MergeInterleave, ALoneCrossReverseOfAnEvenDocument) {
    reverse("A", 6, "4");
    EXPECT_EQ(merged(), "A6 A2");
}

TEST_F(MergeInterleave, ALoneCrossOfStepOneIsTheWholeDocument) {
    cross("A", 4, "1");
    EXPECT_EQ(merged(), "A1 A2 A3 A4");
}

TEST_F(MergeInterleave, ALoneCrossReverseOfStepOneIsTheDocumentBackToFront) {
    reverse("A", 4, "1");
    EXPECT_EQ(merged(), "A4 A3 A2 A1");
}

TEST_F(MergeInterleave, ALoneStepPastTheEndTakesOnePage) {
    cross("A", 3, "99999999999");
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergeInterleave, ALoneStepOfZeroTakesOnePage) {
    cross("A", 3, "0");
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergeInterleave, ALoneReverseStepOfZeroTakesOnePage) {
    reverse("A", 3, "0");
    EXPECT_EQ(merged(), "A3");
}

TEST_F(MergeInterleave, ALoneNegativeStepTakesOnePage) {
    cross("A", 3, "-2");
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergeInterleave, ALoneAbsentStepIsZero) {
    add("A", 3, MergeMethodCross);
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergeInterleave, AStepIsItsLeadingInteger) {
    cross("A", 5, "3 pages");
    EXPECT_EQ(merged(), "A1 A4");
}

TEST_F(MergeInterleave, AGroupStandsAtTheEndOfWhatIsThere) {
    add("O", 2);
    cross("A", 2, "1");
    cross("B", 2, "1");
    add("P", 1);
    EXPECT_EQ(merged(), "O1 O2 A1 B1 A2 B2 P1");
}

TEST_F(MergeInterleave, ALoneCrossStandsAtTheEndOfWhatIsThere) {
    add("O", 1);
    reverse("A", 3, "2");
    add("P", 1);
    EXPECT_EQ(merged(), "O1 A3 A1 P1");
}

TEST_F(MergeInterleave, OddAndEvenPagesAreWoven) {
    cross("A", 6, "2");
    reverse("B", 6, "2");
    EXPECT_EQ(merged(), "A1 B6 A3 B4 A5 B2");
}

TEST_F(MergeInterleave, AReverseLeaderIsWovenFromTheBack) {
    reverse("A", 3, "1");
    cross("B", 3, "1");
    EXPECT_EQ(merged(), "A3 B1 A2 B2 A1 B3");
}

TEST_F(MergeInterleave, ARepeatFollowsEachPageOfTheLeader) {
    cross("A", 3, "1");
    repeat("R", 2);
    EXPECT_EQ(merged(), "A1 R1 R2 A2 R1 R2 A3 R1 R2");
}

TEST_F(MergeInterleave, ARepeatBehindALeaderOfOnePageComesOnce) {
    cross("A", 1, "1");
    repeat("R", 1);
    EXPECT_EQ(merged(), "A1 R1");
}

TEST_F(MergeInterleave, ARepeatPictureComesInEveryRound) {
    cross("A", 2, "1");
    addPicture(MergeMethodRepeat);
    EXPECT_EQ(merged(), "A1 - A2 -");
}

TEST_F(MergeInterleave, TheRestOfALongLeaderFollowsAtTheEnd) {
    cross("A", 6, "1");
    cross("B", 2, "1");
    EXPECT_EQ(merged(), "A1 B1 A2 B2 A3 A4 A5 A6");
}

TEST_F(MergeInterleave, TheRestOfALongReverseLeaderFollowsAtTheEnd) {
    reverse("A", 5, "2");
    cross("B", 1, "1");
    EXPECT_EQ(merged(), "A5 B1 A3 A1");
}

TEST_F(MergeInterleave, TheLeaderMayRunOutFirst) {
    cross("A", 1, "1");
    cross("B", 4, "1");
    EXPECT_EQ(merged(), "A1 B1 B2 B3 B4");
}

TEST_F(MergeInterleave, AShorterFollowerStaysUntilTheOneBehindItLeaves) {
    cross("A", 5, "1");
    cross("B", 1, "1");
    cross("C", 3, "1");
    EXPECT_EQ(merged(), "A1 B1 C1 A2 C2 A3 C3 A4 A5");
}

TEST_F(MergeInterleave, ARepeatComesAsLongAsTheEntryInFrontOfItDelivers) {
    cross("A", 5, "1");
    cross("B", 2, "1");
    repeat("R", 1);
    EXPECT_EQ(merged(), "A1 B1 R1 A2 B2 R1 A3 A4 A5");
}

TEST_F(MergeInterleave, ARepeatInFrontLooksAtTheLeaderNotAtTheEntryBehindIt) {
    cross("A", 1, "1");
    repeat("R", 1);
    cross("B", 3, "1");
    EXPECT_EQ(merged(), "A1 B1 R1 B2 B3");
}

TEST_F(MergeInterleave, TwoRepeatsComeOneBehindTheOther) {
    cross("A", 2, "1");
    repeat("R", 1);
    repeat("S", 1);
    EXPECT_EQ(merged(), "A1 R1 S1 A2 R1 S1");
}

TEST_F(MergeInterleave, AFollowerWithAStepOfItsOwn) {
    cross("A", 3, "1");
    cross("B", 5, "2");
    EXPECT_EQ(merged(), "A1 B1 A2 B3 A3 B5");
}

TEST_F(MergeInterleave, AReverseFollowerWithAStepOfItsOwn) {
    cross("A", 3, "1");
    reverse("B", 6, "3");
    EXPECT_EQ(merged(), "A1 B6 A2 B3 A3");
}

TEST_F(MergeInterleave, AFollowerThatDoesNotOpenIsExhaustedAtOnce) {
    cross("A", 3, "1");
    addMissing(MergeMethodCross, QStringLiteral("1"));
    EXPECT_EQ(merged(), "A1 A2 A3");
}

TEST_F(MergeInterleave, AReverseFollowerThatDoesNotOpenIsExhaustedAtOnce) {
    cross("A", 2, "1");
    addMissing(MergeMethodCrossReverse, QStringLiteral("1"));
    EXPECT_EQ(merged(), "A1 A2");
}

TEST_F(MergeInterleave, AMissingFollowerInFrontTakesTheRepeatWithIt) {
    cross("A", 2, "1");
    addMissing(MergeMethodCross, QStringLiteral("1"));
    repeat("R", 1);
    EXPECT_EQ(merged(), "A1 A2");
}

TEST_F(MergeInterleave, ALeaderThatDoesNotOpenGivesNoPages) {
    addMissing(MergeMethodCross, QStringLiteral("1"));
    cross("B", 2, "1");
    EXPECT_EQ(merged(), "B1 B2");
}

TEST_F(MergeInterleave, ALoneLeaderThatDoesNotOpenGivesNoPages) {
    addMissing(MergeMethodCrossReverse, QStringLiteral("1"));
    add("B", 1);
    EXPECT_EQ(merged(), "B1");
}

TEST_F(MergeInterleave, GroupsAreDividedByWholeAndPartEntries) {
    cross("A", 2, "1");
    cross("B", 2, "1");
    add("P", 3, MergeMethodPart, QStringLiteral("2"));
    cross("C", 2, "1");
    repeat("R", 1);
    add("W", 1);
    repeat("T", 1);
    EXPECT_EQ(merged(), "A1 B1 A2 B2 P2 C1 R1 C2 R1 W1 T1");
}

TEST_F(MergeInterleave, AGroupMakesNoBookmark) {
    settings_.addBookmark = true;
    settings_.useFileName = true;
    cross("A", 2, "1");
    repeat("R", 1);
    run();
    EXPECT_EQ(job().outlineRoot(), nullptr);
}

TEST_F(MergeInterleave, AFollowerOfStepZeroRunsUntilTheJobIsCancelledAndTheLeaderIsStillWhole) {
    cross("A", 3, "1");
    cross("B", 2, "0");
    stopOnTheWay();
    run();
    ASSERT_TRUE(job().isCancelled());
    // Nothing at all when the stop came before the first entry.
    if (pages() == "no file") return;
    std::vector<std::string> leader;
    for (const auto& mark : pageMarks(target())) {
        if (mark != "B1") leader.push_back(mark);
    }
    EXPECT_EQ(leader, (std::vector<std::string>{"A1", "A2", "A3"}));
}

TEST_F(MergeInterleave, ALeaderOfStepZeroKeepsARepeatComingUntilTheJobIsCancelled) {
    cross("A", 2, "0");
    repeat("R", 1);
    stopOnTheWay();
    run();
    ASSERT_TRUE(job().isCancelled());
    if (pages() == "no file") return;
    // A stop inside a round may leave that round without its Repeat, so the last page may be either.
    const auto marks = pageMarks(target());
    for (std::size_t i = 0; i < marks.size(); ++i) EXPECT_EQ(marks[i], i % 2 == 0 ? "A1" : "R1") << i;
}

TEST_F(MergeInterleave, ALeaderOfStepZeroGivesItsPageOnceARoundAndNoMore) {
    cross("A", 2, "0");
    cross("B", 2, "1");
    // Two rounds with pages of B and one in which B leaves.
    EXPECT_EQ(merged(), "A1 B1 A1 B2 A1");
}

TEST_F(MergeInterleave, AReverseLeaderOfStepZeroGivesItsLastPageOnceARound) {
    reverse("A", 2, "0");
    cross("B", 1, "1");
    EXPECT_EQ(merged(), "A2 B1 A2");
}

TEST_F(MergeInterleave, ANegativeStepTakesPagesOutsideTheDocumentThatAreNotThere) {
    cross("A", 2, "-1");
    cross("B", 2, "1");
    EXPECT_EQ(merged(), "A1 B1 B2");
}

TEST_F(MergeInterleave, TheLargestStepDoesNotOverflow) {
    cross("A", 2, "2147483647");
    cross("B", 5, "1");
    cross("C", 2, "2147483647");
    EXPECT_EQ(merged(), "A1 B1 C1 B2 B3 B4 B5");
}

TEST_F(MergeInterleave, ACancelledJobStillGetsTheRestOfTheLeader) {
    // Stops the job when the group asks for padding, which is in front of its first round.
    struct Stopping : PlainSettings {
        MergeOperation* job = nullptr;
        [[nodiscard]] bool isAddPage() const override {
            job->cancel();
            return false;
        }
    } settings;
    cross("A", 5, "2");
    repeat("R", 1);
    add("W", 1);
    MergeOperation job(list_, urlOf(target()), settings, owner_);
    settings.job = &job;
    runHere(job);
    EXPECT_EQ(pages(), "A1 A3 A5");
}

TEST_F(MergeInterleave, ThinningKeepsThePagesInTheOrderOfTheOutput) {
    const struct {
        int count;
        const char* step;
        bool isReverse;
        std::vector<int> expected;
    } cases[] = {
        {5, "2", false, {0, 2, 4}}, {5, "2", true, {4, 2, 0}},     {6, "2", false, {0, 2, 4}},
        {6, "2", true, {5, 3, 1}},  {7, "3", false, {0, 3, 6}},    {7, "3", true, {6, 3, 0}},
        {8, "3", true, {7, 4, 1}},  {4, "1", false, {0, 1, 2, 3}}, {4, "1", true, {3, 2, 1, 0}},
        {4, "4", false, {0}},       {4, "4", true, {3}},           {4, "9", true, {3}},
        {4, "0", false, {0}},       {4, "0", true, {3}},           {4, "-1", false, {0}},
        {4, "-1", true, {3}},       {1, "1", true, {0}},           {0, "1", false, {}},
        {0, "0", true, {}},
    };
    for (const auto& one : cases) {
        const auto document = std::make_shared<MyPdfDocument>();
        std::vector<std::shared_ptr<PDFPage>> pages;
        for (int i = 0; i < one.count; ++i) {
            pages.push_back(document->pageClass()());
            document->insertPage(pages.back(), i);
        }
        cacheData entry{QUrl()};
        entry.setValue(QString::fromLatin1(one.step));
        job().preHandleForMix(document, entry, one.isReverse);
        std::vector<int> kept;
        for (int i = 0; i < document->pageCount(); ++i) {
            const auto at = std::find(pages.begin(), pages.end(), document->pageAtIndex(i));
            kept.push_back(static_cast<int>(at - pages.begin()));
        }
        EXPECT_EQ(kept, one.expected) << one.count << " pages, step " << one.step << (one.isReverse ? ", reverse" : "");
    }
}

TEST_F(MergeInterleave, UnknownMethodsBehindACrossStopTheProgram) {
    cross("A", 2, "1");
    cross("B", 2, "1").setMergeMethod(7);
    MergeOperation job(list_, urlOf(target()), settings_, owner_);
    EXPECT_DEATH(job.main(), "MergeOperation:608: -\\[MergeOperation handleMix:\\]: Assertion `NO' failed");
}

}  // namespace
}  // namespace quillon::test
