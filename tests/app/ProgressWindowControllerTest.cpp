#include "app/ProgressWindowController.h"
#include "tests/support/RecordingOwner.h"
#include "tests/support/ui/RecordingWorkspace.h"
#include "tests/support/ui/Windows.h"

#include <QProgressBar>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

class ProgressSheet : public testing::Test {
protected:
    ProgressSheet() {
        window_.show();
        (void)sheet_.window();
    }

    [[nodiscard]] QPushButton& stopOrClose() { return test::find<QPushButton>(sheet_.window(), "stopOrCloseButton"); }
    [[nodiscard]] QPushButton& open() { return test::find<QPushButton>(sheet_.window(), "openButton"); }
    [[nodiscard]] QProgressBar& bar() { return test::find<QProgressBar>(sheet_.window(), "progressIndicator"); }

    QWidget window_;
    test::RecordingOwner user_;
    test::RecordingWorkspace workspace_;
    ProgressWindowController sheet_{QStringLiteral("ProgressIndicator"), user_, window_, workspace_};
};

TEST_F(ProgressSheet, LoadedItIsNotShownAndReadsStop) {
    EXPECT_EQ(sheet_.window().objectName(), QStringLiteral("ProgressIndicator"));
    EXPECT_FALSE(sheet_.window().isVisible());
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Stop"));
    EXPECT_TRUE(open().isHidden());
    EXPECT_TRUE(bar().isHidden());
    EXPECT_TRUE(sheet_.targetURL().isEmpty());
}

TEST_F(ProgressSheet, RunningItMovesWithoutAValue) {
    sheet_.startHandling();
    EXPECT_TRUE(bar().isVisible());
    EXPECT_EQ(bar().minimum(), 0);
    EXPECT_EQ(bar().maximum(), 0);
}

TEST_F(ProgressSheet, AStrayKeyDoesNotStop) {
    sheet_.startHandling();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape}) {
        QWidget* focus = sheet_.window().focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &sheet_.window(), key);
        EXPECT_TRUE(sheet_.window().isRunning()) << key;
    }
    sheet_.finishHandling();
    QTest::keyClick(sheet_.window().focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(sheet_.window().isRunning());
}

TEST_F(ProgressSheet, FinishedItStandsStillAndStays) {
    sheet_.startHandling();
    sheet_.finishHandling();
    EXPECT_TRUE(sheet_.window().isVisible());
    EXPECT_FALSE(bar().isVisible());
    EXPECT_EQ(stopOrClose().text(), QStringLiteral("Close"));
    EXPECT_TRUE(open().isVisible());
}

TEST_F(ProgressSheet, StopHidesTheSheetAndTellsTheUser) {
    sheet_.startHandling();
    test::click(stopOrClose());
    EXPECT_FALSE(sheet_.window().isVisible());
    EXPECT_EQ(user_.calls, std::vector<std::string>{"stop"});
}

TEST_F(ProgressSheet, OpenWithoutATargetOnlyCloses) {
    sheet_.startHandling();
    sheet_.finishHandling();
    test::click(open());
    EXPECT_FALSE(sheet_.window().isVisible());
    EXPECT_TRUE(workspace_.urls.isEmpty());
    EXPECT_TRUE(user_.calls.empty());
}

TEST_F(ProgressSheet, EscapeDoesNotCutAMergeShort) {
    sheet_.startHandling();
    QTest::keyClick(&sheet_.window(), Qt::Key_Escape);
    EXPECT_TRUE(sheet_.window().isVisible());
    EXPECT_TRUE(user_.calls.empty());
    sheet_.finishHandling();
    QTest::keyClick(&sheet_.window(), Qt::Key_Escape);
    EXPECT_FALSE(sheet_.window().isVisible());
}

TEST_F(ProgressSheet, FinishingAfterStopLeavesItHidden) {
    sheet_.startHandling();
    test::click(stopOrClose());
    sheet_.finishHandling();
    EXPECT_FALSE(sheet_.window().isVisible());
}

}  // namespace
