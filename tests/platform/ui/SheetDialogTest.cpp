#include "platform/ui/Alert.h"
#include "platform/ui/SheetDialog.h"
#include "tests/support/ui/Windows.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include <vector>

using namespace quillon;

namespace {

class Sheets : public testing::Test {
protected:
    Sheets() { window_.show(); }

    QWidget window_;
    SheetDialog sheet_;
    std::vector<int> codes_;

    void begin() {
        sheet_.beginSheet(window_, [this](SheetDialog& sheet, int returnCode) {
            codes_.push_back(returnCode);
            sheet.orderOut();
        });
    }
};

TEST_F(Sheets, ASheetBlocksItsWindowWithoutWaiting) {
    begin();
    EXPECT_TRUE(sheet_.isVisible());
    EXPECT_EQ(sheet_.windowModality(), Qt::WindowModal);
    EXPECT_EQ(sheet_.parentWidget(), &window_);
    EXPECT_TRUE(codes_.empty());
}

TEST_F(Sheets, TheEndIsReportedOnceWithItsCode) {
    begin();
    sheet_.endSheet(7);
    sheet_.endSheet(8);
    EXPECT_EQ(codes_, (std::vector{7}));
    EXPECT_FALSE(sheet_.isVisible());
}

TEST_F(Sheets, ASheetStaysOnTheScreenUntilItIsOrderedOut) {
    sheet_.beginSheet(window_, [](SheetDialog&, int) {});
    sheet_.endSheet(0);
    EXPECT_TRUE(sheet_.isVisible());
    sheet_.orderOut();
    EXPECT_FALSE(sheet_.isVisible());
}

TEST_F(Sheets, TheCallbackMayBeginTheSheetAgain) {
    sheet_.beginSheet(window_, [this](SheetDialog& sheet, int) {
        sheet.orderOut();
        begin();
    });
    sheet_.endSheet(1);
    EXPECT_TRUE(sheet_.isVisible());
    sheet_.endSheet(0);
    EXPECT_EQ(codes_, (std::vector{0}));
}

TEST_F(Sheets, EscapeAndTheCloseButtonOnlyAsk) {
    int asked = 0;
    QObject::connect(&sheet_, &SheetDialog::cancelRequested, &sheet_, [&asked] { ++asked; });
    begin();
    QTest::keyClick(&sheet_, Qt::Key_Escape);
    sheet_.close();
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(sheet_.isVisible());
}

TEST_F(Sheets, AnAlertShowsItsMessageAsItStandsAndEndsByItsButton) {
    bool ended = false;
    Alert::beginSheet(QStringLiteral("<b>2 & 3</b>"), QStringLiteral("Close"), QString(), window_,
                      [&ended](QWidget& alert) {
                          ended = true;
                          alert.hide();
                      });
    QMessageBox* alert = test::visibleAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    EXPECT_EQ(alert->textFormat(), Qt::PlainText);
    EXPECT_EQ(alert->informativeText(), QString());
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons().constFirst()->text(), QStringLiteral("Close"));
    EXPECT_EQ(test::takeAlert(), QStringLiteral("<b>2 & 3</b>"));
    EXPECT_TRUE(ended);
}

}  // namespace
