#include "filelist/DecryptWindowController.h"
#include "tests/support/ui/Windows.h"

#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace quillon;
using test::find;

namespace {

class DecryptSheet : public testing::Test {
protected:
    DecryptSheet() { window_.show(); }

    [[nodiscard]] SheetDialog& sheet() { return controller_.window(); }
    [[nodiscard]] QLineEdit& field() { return find<QLineEdit>(sheet(), "passwordTextField"); }
    void open() {
        endCode_ = -1;
        sheet().beginSheet(window_, [this](SheetDialog& /*sheet*/, int code) { endCode_ = code; });
    }
    void click(const char* button) { test::click(find<QPushButton>(sheet(), button)); }

    QWidget window_;
    DecryptWindowController controller_{QStringLiteral("DecryptWindow")};
    int endCode_ = -1;
};

TEST_F(DecryptSheet, OkEndsItWithOne) {
    open();
    QTest::keyClicks(&field(), QStringLiteral("secret"));
    click("okButton");
    EXPECT_EQ(endCode_, 1);
    EXPECT_EQ(controller_.getPassword(), QStringLiteral("secret"));
}

TEST_F(DecryptSheet, ReturnIsOkAndEscapeIsCancel) {
    open();
    QTest::keyClick(&field(), Qt::Key_Return);
    EXPECT_EQ(endCode_, 1);
    sheet().orderOut();
    open();
    QTest::keyClick(&sheet(), Qt::Key_Escape);
    EXPECT_EQ(endCode_, 0);
}

TEST_F(DecryptSheet, CancelEndsItWithZero) {
    open();
    click("cancelButton");
    EXPECT_EQ(endCode_, 0);
}

TEST_F(DecryptSheet, AnEmptyFieldIsNoPassword) {
    open();
    EXPECT_TRUE(controller_.getPassword().isNull());
}

TEST_F(DecryptSheet, TheTextStaysAndIsReplacedByTyping) {
    open();
    QTest::keyClicks(&field(), QStringLiteral("wrong"));
    click("okButton");
    sheet().orderOut();
    open();
    EXPECT_EQ(controller_.getPassword(), QStringLiteral("wrong"));
    EXPECT_EQ(sheet().focusWidget(), &field());
    QTest::keyClicks(&field(), QStringLiteral("right"));
    EXPECT_EQ(controller_.getPassword(), QStringLiteral("right"));
}

TEST_F(DecryptSheet, ThePasswordIsNotShown) {
    EXPECT_EQ(field().echoMode(), QLineEdit::Password);
}

}  // namespace
