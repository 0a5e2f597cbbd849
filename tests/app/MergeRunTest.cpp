#include "merge/MergeOperation.h"
#include "tests/app/MainWindowTest.h"
#include "tests/support/ExternalReader.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include <filesystem>

using namespace quillon;

namespace {

constexpr auto notDecrypted = "Error ! There are file(s) not DECRYPTED !";
constexpr auto misplacedRepeat =
    "Warning ! There are REPEAT mode PDF file(s) not following immediately the MIX mode or MIX REVERSE mode PDF file.";

class MergeRun : public test::MainWindowTest {
protected:
    [[nodiscard]] std::string pages() const {
        std::string result;
        for (const std::string& mark : test::pageMarks(dir_.file("out.pdf"))) result += mark + ' ';
        return result;
    }
    [[nodiscard]] QPushButton& stopOrClose() { return test::find<QPushButton>(*progressSheet(), "stopOrCloseButton"); }
    [[nodiscard]] QPushButton& open() { return test::find<QPushButton>(*progressSheet(), "openButton"); }
    [[nodiscard]] bool isTargetWritten() const { return std::filesystem::exists(dir_.file("out.pdf")); }

    /// A merge that is cancelled before its first page writes nothing.
    static void letItCollect() { QTest::qWait(20); }
    /// The target is whole and begins with the first files, which have a page each and are called by numbers.
    void expectFirstPages(int files) const {
        ASSERT_TRUE(isTargetWritten());
        EXPECT_EQ(test::qpdfProblems(dir_.file("out.pdf")), "");
        const std::vector<std::string> marks = test::pageMarks(dir_.file("out.pdf"));
        ASSERT_FALSE(marks.empty());
        EXPECT_LE(marks.size(), static_cast<std::size_t>(files));
        for (std::size_t i = 0; i < marks.size(); ++i) EXPECT_EQ(marks[i], std::to_string(i) + '1');
    }

    void lock(int row) {
        entry(row).setNeedPassword(1);
        list().updatePassowrdColumn(row, true);
    }
};

TEST_F(MergeRun, TheListIsMergedIntoTheChosenFile) {
    add({pdf("a", 2), pdf("b", 1)});
    merge();
    EXPECT_EQ(pages(), "a1 a2 b1 ");
    EXPECT_EQ(test::qpdfProblems(dir_.file("out.pdf")), "");
}

TEST_F(MergeRun, TheSavePanelOffersPdfAlone) {
    addPdfs({QStringLiteral("a")});
    choose("actionMerge");
    ASSERT_EQ(panels_.savePanels.size(), 1U);
    EXPECT_EQ(panels_.savePanels.front().allowedFileType, QStringLiteral("pdf"));
}

TEST_F(MergeRun, ALockedEntryBlocksTheMerge) {
    addPdfs({QStringLiteral("a")});
    lock(0);
    choose("actionMerge");
    EXPECT_EQ(test::takeAlert(), QString::fromLatin1(notDecrypted));
    EXPECT_TRUE(panels_.savePanels.empty());
}

TEST_F(MergeRun, AMisplacedRepeatBlocksTheMerge) {
    addPdfs({QStringLiteral("a")});
    list().updateMethodColumn(0, MergeMethodRepeat, QString());
    choose("actionMerge");
    EXPECT_EQ(test::takeAlert(), QString::fromLatin1(misplacedRepeat));
    EXPECT_TRUE(panels_.savePanels.empty());
}

TEST_F(MergeRun, PasswordsAreCheckedBeforeTheOrder) {
    addPdfs({QStringLiteral("a")});
    list().updateMethodColumn(0, MergeMethodRepeat, QString());
    lock(0);
    EXPECT_FALSE(controller_.validateInput());
    EXPECT_EQ(test::takeAlert(), QString::fromLatin1(notDecrypted));
    EXPECT_EQ(test::takeAlert(), QString());
}

TEST_F(MergeRun, AnAlertIsASheetWithOneButtonCalledClose) {
    EXPECT_FALSE(controller_.showAlert(QStringLiteral("Text")));
    QMessageBox* alert = test::visibleAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->parentWidget(), &controller_.window());
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons().constFirst()->text(), QStringLiteral("Close"));
    EXPECT_EQ(alert->informativeText(), QString());
    EXPECT_EQ(test::takeAlert(), QStringLiteral("Text"));
    EXPECT_FALSE(alert->isVisible());
}

TEST_F(MergeRun, ACancelledSavePanelLeavesNoJobAndNoSheet) {
    addPdfs({QStringLiteral("a")});
    choose("actionMerge");
    QTest::qWait(300);  // a job would start after 100 ms
    EXPECT_EQ(controller_.MergeOper(), nullptr);
    EXPECT_FALSE(progressSheet()->isVisible());
}

TEST_F(MergeRun, NothingCanBeChangedBetweenTheSavePanelAndTheSheet) {
    addPdfs({QStringLiteral("a"), QStringLiteral("b")});
    select(1);
    panels_.answerNext({target()});
    choose("actionMerge");
    EXPECT_EQ(controller_.MergeOper(), nullptr);
    for (const char* name : {"actionAddFile", "actionSettings", "actionRemoveAll", "actionMoveUp", "actionMerge"}) {
        EXPECT_FALSE(action(name).isEnabled()) << name;
    }
    EXPECT_FALSE(table().isEnabled());
    EXPECT_TRUE(action("actionHelp").isEnabled());
    ASSERT_TRUE(test::waitFor([this] { return isFinished(); }));
    EXPECT_TRUE(action("actionAddFile").isEnabled());
    EXPECT_TRUE(table().isEnabled());
}

TEST_F(MergeRun, TheSheetCoversTheWindowWhileTheJobRuns) {
    addPdfs({QStringLiteral("a")});
    // As the job calls it, which waits meanwhile.
    controller_.startHandling();
    ASSERT_NE(progressSheet(), nullptr);
    EXPECT_TRUE(progressSheet()->isVisible());
    EXPECT_EQ(progressSheet()->windowModality(), Qt::WindowModal);
    EXPECT_EQ(progressSheet()->parentWidget(), &controller_.window());
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Stop"));
    EXPECT_FALSE(open().isVisible());
    controller_.stopHandling();
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Close"));
    EXPECT_TRUE(open().isVisible());
    test::click(stopOrClose());
}

TEST_F(MergeRun, CloseDismissesTheFinishedSheet) {
    addPdfs({QStringLiteral("a")});
    merge();
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Close"));
    test::click(stopOrClose());
    EXPECT_FALSE(progressSheet()->isVisible());
    EXPECT_TRUE(workspace_.urls.isEmpty());
}

TEST_F(MergeRun, OpenDismissesTheSheetAndOpensTheResult) {
    addPdfs({QStringLiteral("a")});
    merge();
    test::click(open());
    EXPECT_FALSE(progressSheet()->isVisible());
    EXPECT_EQ(workspace_.urls, QList<QUrl>{target()});
}

TEST_F(MergeRun, TwoMergesInARowReuseTheSheet) {
    add({pdf("a", 2)});
    merge();
    SheetDialog* first = progressSheet();
    test::click(stopOrClose());
    controller_.startHandling();
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Stop"));
    EXPECT_FALSE(open().isVisible());
    controller_.stopHandling();
    test::click(stopOrClose());
    add({pdf("b", 1)});
    merge();
    EXPECT_EQ(progressSheet(), first);
    EXPECT_EQ(pages(), "a1 a2 b1 ");
}

TEST_F(MergeRun, StopDismissesTheSheetAtOnceAndThePartialFileIsWhole) {
    constexpr int files = 3000;
    QList<QUrl> urls;
    for (int i = 0; i < files; ++i) urls.append(pdf(std::to_string(i)));
    add(urls);
    panels_.answerNext({target()});
    choose("actionMerge");
    ASSERT_TRUE(test::waitFor([this] { return progressSheet()->isVisible(); }));
    const std::shared_ptr<MergeOperation> job = controller_.MergeOper();
    letItCollect();
    stopOrClose().click();
    EXPECT_FALSE(progressSheet()->isVisible());
    EXPECT_TRUE(job->isCancelled());
    // The job still reads the list and the settings.
    EXPECT_FALSE(action("actionSettings").isEnabled());
    EXPECT_FALSE(action("actionRemoveAll").isEnabled());
    EXPECT_FALSE(table().isEnabled());
    EXPECT_TRUE(action("actionQuit").isEnabled());
    // The end of the job only repeats the finished state on the hidden sheet.
    ASSERT_TRUE(test::waitFor([this] { return action("actionSettings").isEnabled(); }));
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Close"));
    EXPECT_TRUE(action("actionRemoveAll").isEnabled());
    EXPECT_TRUE(table().isEnabled());
    QSignalSpy quit(&controller_, &MainWindowController::quitRequested);
    controller_.quit();
    EXPECT_FALSE(progressSheet()->isVisible());
    expectFirstPages(files);
}

TEST_F(MergeRun, StoppingTwiceIsHarmless) {
    addPdfs({QStringLiteral("a")});
    merge();
    controller_.stopHandling();
    controller_.stopHandling();
    EXPECT_TRUE(isFinished());
    test::click(stopOrClose());
}

TEST_F(MergeRun, QuitDuringAMergeWaitsForAWholeFile) {
    QList<QUrl> urls;
    for (int i = 0; i < 500; ++i) urls.append(pdf(std::to_string(i)));
    add(urls);
    QSignalSpy quit(&controller_, &MainWindowController::quitRequested);
    panels_.answerNext({target()});
    choose("actionMerge");
    ASSERT_TRUE(test::waitFor([this] { return progressSheet()->isVisible(); }));
    letItCollect();
    controller_.quit();
    EXPECT_EQ(quit.count(), 1);
    expectFirstPages(500);
}

TEST_F(MergeRun, QuitIsAmongTheCommandsOfTheProgressSheet) {
    EXPECT_TRUE(progressSheet()->actions().contains(&action("actionQuit")));
}

TEST_F(MergeRun, TheOlderWayOfStartingKeepsNoJob) {
    add({pdf("a", 2)});
    controller_.savePanelDidEnd(target(), 0);
    QTest::qWait(300);
    EXPECT_FALSE(isTargetWritten());
    controller_.savePanelDidEnd(target(), 1);
    ASSERT_TRUE(test::waitFor([this] { return isFinished(); }));
    EXPECT_EQ(controller_.MergeOper(), nullptr);
    EXPECT_EQ(pages(), "a1 a2 ");
    test::click(open());
    EXPECT_EQ(workspace_.urls, QList<QUrl>{target()});
}

TEST_F(MergeRun, TheSheetLooksTheSameWhenTheTargetCannotBeWritten) {
    addPdfs({QStringLiteral("a")});
    panels_.answerNext({urlOf(dir_.file("missing/out.pdf"))});
    choose("actionMerge");
    ASSERT_TRUE(test::waitFor([this] { return isFinished(); }));
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Close"));
    test::click(stopOrClose());
}

}  // namespace
