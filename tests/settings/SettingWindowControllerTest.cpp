#include "platform/ui/PopUpButton.h"
#include "platform/ui/RadioMatrix.h"
#include "tests/settings/SettingSheetTest.h"
#include "tests/support/ui/Windows.h"

#include <QAction>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QMenu>
#include <QTabWidget>

using namespace quillon;

namespace {

class SettingWindow : public test::SettingSheet {
protected:
    /// Applies and expects the message; the sheet must still be open, and nothing stored.
    void expectRefusal(const char* message) {
        apply();
        EXPECT_EQ(test::takeAlert(), QString::fromLatin1(message));
        EXPECT_EQ(test::visibleAlert(), nullptr);
        EXPECT_TRUE(sheet().isVisible());
        EXPECT_EQ(endCode(), -1);
    }

    void expectApplied() {
        apply();
        EXPECT_EQ(test::takeAlert(), QString());
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(endCode(), 1);
    }

    static constexpr const char* noPath =
        "Error ! The path of the PDF file ,which is used when append is neccessary,MUST NOT BE EMPTY!";
    static constexpr const char* noWatermark = "Error ! The contents of watermark MUST NOT BE EMPTY !";
    static constexpr const char* noPassword = "Error ! The password field MUST NOT BE EMPTY !";
    static constexpr const char* equalPasswords = "Error ! User pasword MUST NOT EQUAL to owner password !";
    static constexpr const char* noBegin = "Error ! The begin page number MUST NOT BE EMPTY !";
    static constexpr const char* noOffset = "Error ! The page number offset MUST NOT BE EMPTY !";
};

// Loading

TEST_F(SettingWindow, IsLoadedOnceAndNamedAfterItsInterfaceFile) {
    start();
    EXPECT_EQ(sheet().objectName(), QStringLiteral("SettingWindow"));
    EXPECT_EQ(&sheet(), &controller().window());
    EXPECT_TRUE(isOpen());
}

TEST_F(SettingWindow, TheFontBoxHoldsEveryFamilyInTheOrderOfTheSystem) {
    start();
    const QComboBox& fonts = box("addPageNumberFontBox");
    QStringList items;
    for (int index = 0; index < fonts.count(); ++index) items << fonts.itemText(index);
    EXPECT_EQ(items, QFontDatabase::families());
}

TEST_F(SettingWindow, ThePositionBoxHoldsThreePositions) {
    start();
    const QComboBox& positions = box("addPageNumberPositionBox");
    ASSERT_EQ(positions.count(), 3);
    EXPECT_EQ(positions.itemText(0), QStringLiteral("Left Buttom"));
    EXPECT_EQ(positions.itemText(1), QStringLiteral("Middle Buttom"));
    EXPECT_EQ(positions.itemText(2), QStringLiteral("Right Buttom"));
}

TEST_F(SettingWindow, TheMacroMenusHoldAllMacrosBehindAHiddenFace) {
    start();
    for (const char* name : {"titleMacroButton", "authorMacroButton", "subjectMacroButton", "keywordsMacroButton"}) {
        auto& button = test::find<PopUpButton>(sheet(), name);
        EXPECT_EQ(button.text(), QStringLiteral("Macro..."));
        QStringList titles;
        const QList<QAction*> items = button.menu()->actions();
        for (const QAction* item : items) titles << item->text();
        EXPECT_EQ(titles, (QStringList{QStringLiteral("Macro..."), QStringLiteral("%Original_Author%"),
                                       QStringLiteral("%Original_Title%"), QStringLiteral("%Original_Subject%"),
                                       QStringLiteral("%Original_Keywords%")}));
        EXPECT_FALSE(items.at(0)->isVisible());
        for (int index = 1; index < 5; ++index) EXPECT_TRUE(items.at(index)->isVisible());
    }
}

// Macros

TEST_F(SettingWindow, AMacroIsAppendedTwiceWhenChosenTwice) {
    start();
    retype("titleField", QStringLiteral("x "));
    field("titleField").setCursorPosition(0);
    for (const char* expected : {"x %Original_Author%", "x %Original_Author%%Original_Author%"}) {
        chooseMacro("titleMacroButton", QStringLiteral("%Original_Author%"));
        EXPECT_EQ(shown("titleField"), QString::fromLatin1(expected));
        EXPECT_EQ(test::find<PopUpButton>(sheet(), "titleMacroButton").text(), QStringLiteral("Macro..."));
    }
}

TEST_F(SettingWindow, EachMacroButtonServesItsOwnFieldAndGroup) {
    using Flags = SettingWindowController::ChangeFlags;
    struct Case {
        const char* button;
        const char* field;
        bool Flags::*flag;
    };
    start();
    for (const Case& each : {Case{"titleMacroButton", "titleField", &Flags::isTitleChange},
                             Case{"authorMacroButton", "authorField", &Flags::isAuthorChange},
                             Case{"subjectMacroButton", "subjectField", &Flags::isSubjectChange},
                             Case{"keywordsMacroButton", "keywordsField", &Flags::isKeywordsChange}}) {
        controller().restoreUserDefaults();
        const QString before = shown(each.field).toString();
        chooseMacro(each.button, QStringLiteral("%Original_Subject%"));
        EXPECT_EQ(shown(each.field), before + QStringLiteral("%Original_Subject%"));
        Flags expected;
        expected.*each.flag = true;
        EXPECT_EQ(controller().changeFlags(), expected);
    }
}

// Choosing the page's file

TEST_F(SettingWindow, AChosenFileIsShownAndTaken) {
    start();
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    controller().saveUserDefault();
    panels_.answerNext({QUrl::fromLocalFile(QStringLiteral("/tmp/a b%20ä.pdf"))});
    click("appendPageSelectButton");
    ASSERT_EQ(panels_.modalOpenPanels.size(), 1U);
    EXPECT_TRUE(panels_.openPanels.empty());
    EXPECT_EQ(panels_.modalOpenPanels[0].allowedFileTypes, QStringList{QStringLiteral("pdf")});
    EXPECT_TRUE(panels_.modalOpenPanels[0].canChooseFiles);
    EXPECT_FALSE(panels_.modalOpenPanels[0].canChooseDirectories);
    EXPECT_FALSE(panels_.modalOpenPanels[0].allowsMultipleSelection);
    EXPECT_EQ(shown("appendPagePathField"), QStringLiteral("/tmp/a b%20ä.pdf"));
    EXPECT_EQ(controller().cachePathURL(), QUrl::fromLocalFile(QStringLiteral("/tmp/a b%20ä.pdf")));
    EXPECT_TRUE(controller().changeFlags().isAppendPageChange);
}

TEST_F(SettingWindow, CancellingTheChoiceOfAFileChangesNothing) {
    start();
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    type("appendPagePathField", QStringLiteral("/tmp/x.pdf"));
    controller().saveUserDefault();
    click("appendPageSelectButton");
    EXPECT_EQ(panels_.modalOpenPanels.size(), 1U);
    EXPECT_EQ(shown("appendPagePathField"), QStringLiteral("/tmp/x.pdf"));
    EXPECT_TRUE(controller().cachePathURL().isEmpty());
    EXPECT_EQ(controller().changeFlags(), SettingWindowController::ChangeFlags());
}

// Checks

TEST_F(SettingWindow, APageFromAFileNeedsAPath) {
    start();
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    expectRefusal(noPath);
    type("appendPagePathField", QStringLiteral(" "));
    expectApplied();
}

TEST_F(SettingWindow, ABlankPageNeedsNoPath) {
    start();
    click("appendPageCheck");
    expectApplied();
}

TEST_F(SettingWindow, AWatermarkNeedsAText) {
    start();
    click("addWatermarkCheck");
    expectRefusal(noWatermark);
    type("addWatermarkField", QStringLiteral(" "));
    expectApplied();
}

TEST_F(SettingWindow, AUserPasswordMustNotBeEmpty) {
    start();
    click("userPasswordCheck");
    expectRefusal(noPassword);
    type("userPasswordField", QStringLiteral("u"));
    expectApplied();
}

TEST_F(SettingWindow, AnOwnerPasswordMustNotBeEmpty) {
    start();
    click("ownerPasswordCheck");
    expectRefusal(noPassword);
    type("ownerPasswordField", QStringLiteral("o"));
    expectApplied();
}

TEST_F(SettingWindow, BothPasswordsMustNotBeEmptyBeforeTheyMustDiffer) {
    start();
    click("userPasswordCheck");
    click("ownerPasswordCheck");
    expectRefusal(noPassword);
    type("userPasswordField", QStringLiteral("same"));
    expectRefusal(noPassword);
    type("ownerPasswordField", QStringLiteral("same"));
    expectRefusal(equalPasswords);
    retype("ownerPasswordField", QStringLiteral("Same"));
    expectApplied();
}

TEST_F(SettingWindow, EqualPasswordsOfWhichOneIsOffAreFine) {
    start();
    click("userPasswordCheck");
    type("userPasswordField", QStringLiteral("same"));
    click("ownerPasswordCheck");
    type("ownerPasswordField", QStringLiteral("same"));
    click("ownerPasswordCheck");
    expectApplied();
}

TEST_F(SettingWindow, PageNumbersNeedAFirstNumberAndAStep) {
    start();
    click("addPageNumberCheck");
    expectRefusal(noBegin);
    type("addPageNumberBeginField", QStringLiteral("0"));
    expectRefusal(noOffset);
    type("addPageNumberOffsetField", QStringLiteral("0"));
    expectRefusal(noOffset);
    type("addPageNumberOffsetField", QStringLiteral("1"));
    expectApplied();
}

TEST_F(SettingWindow, WithoutPageNumbersTheirFieldsMayBeEmpty) {
    start();
    click("addPageNumberCheck");
    click("addPageNumberCheck");
    expectApplied();
}

TEST_F(SettingWindow, TheResolutionSizePrefixAndInformationAreNotChecked) {
    start();
    click("addPageNumberCheck");
    type("addPageNumberBeginField", QStringLiteral("1"));
    type("addPageNumberOffsetField", QStringLiteral("1"));
    for (const char* name : {"imageDPIField", "titleField", "authorField", "subjectField", "keywordsField"}) {
        retype(name, QStringLiteral(""));
    }
    expectApplied();
}

TEST_F(SettingWindow, ChecksGoInTheirOrderAndTheFirstFailureCounts) {
    start();
    for (const char* name :
         {"addPageNumberCheck", "ownerPasswordCheck", "userPasswordCheck", "addWatermarkCheck", "appendPageCheck"}) {
        click(name);
    }
    clickRow("appendPageOptionRadio", 1);
    expectRefusal(noPath);
    type("appendPagePathField", QStringLiteral("x"));
    expectRefusal(noWatermark);
    type("addWatermarkField", QStringLiteral("x"));
    expectRefusal(noPassword);
    type("userPasswordField", QStringLiteral("x"));
    expectRefusal(noPassword);
    type("ownerPasswordField", QStringLiteral("x"));
    expectRefusal(equalPasswords);
    type("ownerPasswordField", QStringLiteral("y"));
    expectRefusal(noBegin);
    type("addPageNumberBeginField", QStringLiteral("1"));
    expectRefusal(noOffset);
    type("addPageNumberOffsetField", QStringLiteral("1"));
    expectApplied();
}

TEST_F(SettingWindow, ARefusalKeepsWhatWasTypedAndShowsTheField) {
    start();
    click("userPasswordCheck");
    retype("titleField", QStringLiteral("typed"));
    apply();
    QMessageBox* alert = test::visibleAlert();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->parentWidget(), &sheet());
    EXPECT_EQ(alert->informativeText(), QString());
    ASSERT_EQ(alert->buttons().size(), 1);
    EXPECT_EQ(alert->buttons().constFirst()->text(), QStringLiteral("Close"));
    EXPECT_EQ(test::takeAlert(), QString::fromLatin1(noPassword));
    EXPECT_EQ(shown("titleField"), QStringLiteral("typed"));
    EXPECT_TRUE(controller().isUserEncrypt());
    EXPECT_TRUE(field("userPasswordField").isVisible());
    EXPECT_FALSE(isStored("QUILLON_TITLE"));
}

// Buttons

TEST_F(SettingWindow, ApplySavesAndClosesTheSheet) {
    start();
    retype("titleField", QStringLiteral("T"));
    expectApplied();
    EXPECT_EQ(storedText("QUILLON_TITLE"), QStringLiteral("T"));
}

TEST_F(SettingWindow, ReturnApplies) {
    start();
    retype("titleField", QStringLiteral("T"));
    QTest::keyClick(&field("titleField"), Qt::Key_Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(endCode(), 1);
    EXPECT_EQ(storedText("QUILLON_TITLE"), QStringLiteral("T"));
}

TEST_F(SettingWindow, CancelClosesTheSheetWithoutAnAlert) {
    start();
    click("userPasswordCheck");
    cancel();
    EXPECT_EQ(test::visibleAlert(), nullptr);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(endCode(), 0);
    EXPECT_FALSE(controller().isUserEncrypt());
}

TEST_F(SettingWindow, EscapeAndTheCloseButtonCancel) {
    start();
    retype("titleField", QStringLiteral("T"));
    QTest::keyClick(&sheet(), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(endCode(), 0);
    EXPECT_EQ(shown("titleField"), QStringLiteral("%Original_Title%"));
    restart();
    sheet().close();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(endCode(), 0);
}

TEST_F(SettingWindow, TheSheetCanBeShownAgainAfterItWasClosed) {
    start();
    apply();
    QWidget other;
    other.show();
    int ends = 0;
    sheet().beginSheet(other, [&](SheetDialog& sheet, int returnCode) {
        controller().DidEndSheet(sheet, returnCode);
        ++ends;
    });
    EXPECT_TRUE(sheet().isVisible());
    cancel();
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(sheet().isVisible());
}

}  // namespace
