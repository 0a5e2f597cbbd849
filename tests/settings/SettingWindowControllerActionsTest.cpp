#include "platform/ui/ColorWell.h"
#include "platform/ui/RadioMatrix.h"
#include "platform/ui/TextColor.h"
#include "tests/settings/SettingSheetTest.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

using namespace quillon;

namespace {

using Flags = SettingWindowController::ChangeFlags;

class SettingActions : public test::SettingSheet {
protected:
    SettingActions() { storeFile(""); }

    const Flags& flags() { return controller().changeFlags(); }

    /// The flags after an action on a sheet in which nothing else was touched.
    Flags flagsAfter(const std::function<void()>& action) {
        controller().restoreUserDefaults();
        EXPECT_EQ(flags(), Flags());
        action();
        return flags();
    }

    static Flags only(bool Flags::*flag) {
        Flags expected;
        expected.*flag = true;
        return expected;
    }

    /// All controls enabled or not, and all captions in the colour for it.
    void expectEnabled(bool enabled, const std::vector<const char*>& controls,
                       const std::vector<const char*>& captions) {
        for (const char* name : controls) EXPECT_EQ(isEnabled(name), enabled) << name;
        for (const char* name : captions) EXPECT_EQ(isCaptionNormal(name), enabled) << name;
    }
};

// Enabling

TEST_F(SettingActions, ThePaddingPageOffDisablesItsControls) {
    start();
    expectEnabled(false, {"appendPageOptionRadio", "appendPagePathField", "appendPageSelectButton"},
                  {"appendPagePathLabel"});
}

TEST_F(SettingActions, ThePaddingPageOnWithTheBlankRowLeavesFieldAndButtonDisabled) {
    start();
    click("appendPageCheck");
    expectEnabled(true, {"appendPageOptionRadio"}, {});
    expectEnabled(false, {"appendPagePathField", "appendPageSelectButton"}, {"appendPagePathLabel"});
}

TEST_F(SettingActions, TheRowOfTheFileEnablesFieldAndButton) {
    start();
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    expectEnabled(true, {"appendPagePathField", "appendPageSelectButton"}, {"appendPagePathLabel"});
    clickRow("appendPageOptionRadio", 0);
    expectEnabled(false, {"appendPagePathField", "appendPageSelectButton"}, {"appendPagePathLabel"});
}

TEST_F(SettingActions, ThePaddingPageOnAgainEnablesFieldAndButtonOfTheRowOfTheFile) {
    start();
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    click("appendPageCheck");
    expectEnabled(false, {"appendPageOptionRadio", "appendPagePathField", "appendPageSelectButton"},
                  {"appendPagePathLabel"});
    click("appendPageCheck");
    expectEnabled(true, {"appendPageOptionRadio", "appendPagePathField", "appendPageSelectButton"},
                  {"appendPagePathLabel"});
}

TEST_F(SettingActions, TheWatermarkEnablesItsField) {
    start();
    expectEnabled(false, {"addWatermarkField"}, {"addWatermarkContentLabel"});
    click("addWatermarkCheck");
    expectEnabled(true, {"addWatermarkField"}, {"addWatermarkContentLabel"});
    click("addWatermarkCheck");
    expectEnabled(false, {"addWatermarkField"}, {"addWatermarkContentLabel"});
}

TEST_F(SettingActions, BookmarksEnableTheirControls) {
    start();
    expectEnabled(false, {"addBookmarkOptionRadio", "addBookmarkUseFilenameCheck", "addBookmarkRemoveCheck"}, {});
    click("addBookmarkCheck");
    expectEnabled(true, {"addBookmarkOptionRadio", "addBookmarkUseFilenameCheck"}, {});
    expectEnabled(false, {"addBookmarkRemoveCheck"}, {});
    click("addBookmarkUseFilenameCheck");
    expectEnabled(true, {"addBookmarkRemoveCheck"}, {});
    click("addBookmarkUseFilenameCheck");
    expectEnabled(false, {"addBookmarkRemoveCheck"}, {});
}

TEST_F(SettingActions, BookmarksOffDisableTheRemovalWhateverTheStateOfFileNames) {
    start();
    click("addBookmarkCheck");
    click("addBookmarkUseFilenameCheck");
    click("addBookmarkCheck");
    EXPECT_TRUE(check("addBookmarkUseFilenameCheck").isChecked());
    expectEnabled(false, {"addBookmarkOptionRadio", "addBookmarkUseFilenameCheck", "addBookmarkRemoveCheck"}, {});
}

TEST_F(SettingActions, BookmarksOnAgainEnableTheRemovalOnlyWithFileNames) {
    start();
    click("addBookmarkCheck");
    click("addBookmarkCheck");
    click("addBookmarkCheck");
    EXPECT_FALSE(isEnabled("addBookmarkRemoveCheck"));
    click("addBookmarkUseFilenameCheck");
    click("addBookmarkCheck");
    click("addBookmarkCheck");
    EXPECT_TRUE(isEnabled("addBookmarkRemoveCheck"));
}

TEST_F(SettingActions, PageNumbersEnableTheirControls) {
    const std::vector<const char*> controls = {"addPageNumberBeginField", "colorWell",
                                               "addPageNumberFontBox",    "addPageNumberPrefixField",
                                               "addPageNumberSizeField",  "addPageNumberOffsetField",
                                               "addPageNumberPositionBox"};
    const std::vector<const char*> captions = {
        "addPageNumberPreviewLabel",      "addPageNumberBeginLabel",   "addPageNumberColorLabel",
        "addPageNumberColorContentLabel", "addPageNumberExampleLabel", "addPageNumberFontLabel",
        "addPageNumberOffsetLabel",       "addPageNumberPrefixField",  "addPageNumberPositionLabel",
        "addPageNumberSizeLabel",         "addPageNumberPrefix"};
    start();
    expectEnabled(false, controls, captions);
    click("addPageNumberCheck");
    expectEnabled(true, controls, captions);
    click("addPageNumberCheck");
    expectEnabled(false, controls, captions);
}

TEST_F(SettingActions, TheUserPasswordEnablesItsField) {
    start();
    expectEnabled(false, {"userPasswordField"}, {"userPasswordLabel"});
    click("userPasswordCheck");
    expectEnabled(true, {"userPasswordField"}, {"userPasswordLabel"});
}

TEST_F(SettingActions, TheOwnerPasswordEnablesItsControls) {
    const std::vector<const char*> controls = {"ownerPasswordCopyBox", "ownerPasswordField", "ownerPasswordPrintBox"};
    const std::vector<const char*> captions = {"ownerPasswordLabel", "ownerPasswordPrintLabel",
                                               "ownerPasswordCopyLabel"};
    start();
    expectEnabled(false, controls, captions);
    click("ownerPasswordCheck");
    expectEnabled(true, controls, captions);
    click("ownerPasswordCheck");
    expectEnabled(false, controls, captions);
}

TEST_F(SettingActions, WhatIsStoredOnIsEnabledFromTheStart) {
    storeGroupsOn();
    store("QUILLON_APPEND_PAGE_OPTION", 1);
    start();
    expectEnabled(
        true,
        {"appendPageOptionRadio", "appendPagePathField", "appendPageSelectButton", "addWatermarkField",
         "addBookmarkOptionRadio", "addBookmarkRemoveCheck", "colorWell", "userPasswordField", "ownerPasswordField"},
        {"appendPagePathLabel", "addWatermarkContentLabel", "userPasswordLabel", "ownerPasswordCopyLabel"});
    EXPECT_EQ(flags(), Flags());
}

// Change flags

TEST_F(SettingActions, EveryControlFlagsItsGroupWhenClicked) {
    start();
    EXPECT_EQ(flagsAfter([this] { click("appendPageCheck"); }), only(&Flags::isAppendPageChange));
    EXPECT_EQ(flagsAfter([this] { click("addWatermarkCheck"); }), only(&Flags::isAddWatermarkChange));
    EXPECT_EQ(flagsAfter([this] { click("addBookmarkCheck"); }), only(&Flags::isAddBookmarkChange));
    EXPECT_EQ(flagsAfter([this] { click("addPageNumberCheck"); }), only(&Flags::isAddPageNumberChange));
    EXPECT_EQ(flagsAfter([this] { click("userPasswordCheck"); }), only(&Flags::isUserEncryptChange));
    EXPECT_EQ(flagsAfter([this] { click("ownerPasswordCheck"); }), only(&Flags::isOwnerEncryptChange));
}

TEST_F(SettingActions, EveryDetailFlagsItsGroupWhenChosen) {
    storeGroupsOn();
    store("QUILLON_APPEND_PAGE_OPTION", 1);
    start();
    const auto padding = only(&Flags::isAppendPageChange);
    EXPECT_EQ(flagsAfter([this] { clickRow("appendPageOptionRadio", 0); }), padding);
    const auto bookmarks = only(&Flags::isAddBookmarkChange);
    EXPECT_EQ(flagsAfter([this] { clickRow("addBookmarkOptionRadio", 1); }), bookmarks);
    EXPECT_EQ(flagsAfter([this] { click("addBookmarkUseFilenameCheck"); }), bookmarks);
    EXPECT_EQ(flagsAfter([this] { click("addBookmarkRemoveCheck"); }), bookmarks);
    const auto numbers = only(&Flags::isAddPageNumberChange);
    EXPECT_EQ(flagsAfter([this] { choose("addPageNumberPositionBox", 2); }), numbers);
    EXPECT_EQ(flagsAfter([this] { choose("addPageNumberFontBox", 1); }), numbers);
    EXPECT_EQ(flagsAfter([this] { chooseColor(Qt::red); }), numbers);
    const auto owner = only(&Flags::isOwnerEncryptChange);
    EXPECT_EQ(flagsAfter([this] { choose("ownerPasswordPrintBox", 1); }), owner);
    EXPECT_EQ(flagsAfter([this] { choose("ownerPasswordCopyBox", 1); }), owner);
}

TEST_F(SettingActions, EveryFieldFlagsItsGroupWhenTyped) {
    storeGroupsOn();
    store("QUILLON_APPEND_PAGE_OPTION", 1);
    start();
    const auto afterTyping = [this](const char* name) { return flagsAfter([&] { type(name, QStringLiteral("1")); }); };
    EXPECT_EQ(afterTyping("appendPagePathField"), only(&Flags::isAppendPageChange));
    EXPECT_EQ(afterTyping("addWatermarkField"), only(&Flags::isAddWatermarkChange));
    EXPECT_EQ(afterTyping("imageDPIField"), only(&Flags::isDPIChange));
    EXPECT_EQ(afterTyping("titleField"), only(&Flags::isTitleChange));
    EXPECT_EQ(afterTyping("subjectField"), only(&Flags::isSubjectChange));
    EXPECT_EQ(afterTyping("authorField"), only(&Flags::isAuthorChange));
    EXPECT_EQ(afterTyping("keywordsField"), only(&Flags::isKeywordsChange));
    EXPECT_EQ(afterTyping("addPageNumberBeginField"), only(&Flags::isAddPageNumberChange));
    EXPECT_EQ(afterTyping("addPageNumberOffsetField"), only(&Flags::isAddPageNumberChange));
    EXPECT_EQ(afterTyping("addPageNumberPrefixField"), only(&Flags::isAddPageNumberChange));
    EXPECT_EQ(afterTyping("addPageNumberSizeField"), only(&Flags::isAddPageNumberChange));
}

TEST_F(SettingActions, TypingAPasswordFlagsNothing) {
    storeGroupsOn();
    start();
    type("userPasswordField", QStringLiteral("u"));
    type("ownerPasswordField", QStringLiteral("o"));
    EXPECT_EQ(shown("userPasswordField"), QStringLiteral("u"));
    EXPECT_EQ(flags(), Flags());
    apply();
    EXPECT_FALSE(isStored("QUILLON_USER_PASSWORD"));
    EXPECT_FALSE(isStored("QUILLON_OWNER_PASSWORD"));
}

// The step

TEST_F(SettingActions, AStepOfZeroVanishesAsItIsTyped) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    start();
    for (const char* zero : {"0", "00"}) {
        retype("addPageNumberOffsetField", QString::fromLatin1(zero));
        EXPECT_EQ(shown("addPageNumberOffsetField"), QStringLiteral("")) << zero;
        EXPECT_EQ(flags(), Flags()) << zero;
    }
    retype("addPageNumberOffsetField", QStringLiteral("10"));
    EXPECT_EQ(shown("addPageNumberOffsetField"), QStringLiteral("10"));
    EXPECT_TRUE(flags().isAddPageNumberChange);
}

TEST_F(SettingActions, DigitsOnlyCanBeTypedIntoTheNumbers) {
    storeGroupsOn();
    start();
    for (const char* name :
         {"imageDPIField", "addPageNumberBeginField", "addPageNumberOffsetField", "addPageNumberSizeField"}) {
        retype(name, QStringLiteral("-1a.2 3"));
        EXPECT_EQ(shown(name), QStringLiteral("123")) << name;
    }
    EXPECT_EQ(field("imageDPIField").validator(), field("addPageNumberSizeField").validator());
}

// The example

TEST_F(SettingActions, TheExampleTakesTheColourFontAndSizeThatAreChosen) {
    start();
    click("addPageNumberCheck");
    chooseColor(Qt::red);
    EXPECT_EQ(textColor(label("addPageNumberExampleLabel")), QColor(Qt::red));
    choose("addPageNumberFontBox", 1);
    EXPECT_EQ(controller().cacheFontName(), test::secondFont());
    EXPECT_EQ(label("addPageNumberExampleLabel").font().family(), test::secondFont());
    type("addPageNumberSizeField", QStringLiteral("21"));
    EXPECT_EQ(label("addPageNumberExampleLabel").font().pointSize(), 21);
    EXPECT_EQ(label("addPageNumberExampleLabel").text(), QStringLiteral("Page 1"));
}

TEST_F(SettingActions, TheExampleIsInTheNormalColourAfterSwitchingOnUntilTheSizeIsTouched) {
    start();
    click("addPageNumberCheck");
    chooseColor(Qt::red);
    click("addPageNumberCheck");
    EXPECT_EQ(textColor(label("addPageNumberExampleLabel")), disabledControlTextColor());
    click("addPageNumberCheck");
    EXPECT_EQ(textColor(label("addPageNumberExampleLabel")), controlTextColor());
    type("addPageNumberSizeField", QStringLiteral("1"));
    EXPECT_EQ(textColor(label("addPageNumberExampleLabel")), QColor(Qt::red));
}

TEST_F(SettingActions, TheExampleShowsTheStoredColourAndFontAtTheStart) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_FONT", test::secondFont());
    store("QUILLON_ADD_PAGE_NUMBER_SIZE", 18);
    store("QUILLON_ADD_PAGE_NUMBER_COLOR", QByteArray("#ff0000ff"));
    start();
    const QLabel& example = label("addPageNumberExampleLabel");
    EXPECT_EQ(textColor(example), QColor(Qt::blue));
    EXPECT_EQ(example.font().family(), test::secondFont());
    EXPECT_EQ(example.font().pointSize(), 18);
}

TEST_F(SettingActions, AFontThatIsNotInstalledLeavesTheExampleWithoutIt) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_FONT", QStringLiteral("No Such Font"));
    store("QUILLON_ADD_PAGE_NUMBER_SIZE", 18);
    start();
    EXPECT_EQ(label("addPageNumberExampleLabel").font().family(), label("addPageNumberFontLabel").font().family());
}

TEST_F(SettingActions, TheExampleCanBeReadWhateverItsColour) {
    start();
    click("addPageNumberCheck");
    for (const QColor& color : {QColor(Qt::black), QColor(Qt::white), QColor(Qt::yellow), QColor(Qt::darkBlue)}) {
        chooseColor(color);
        const QPalette& palette = label("addPageNumberExampleLabel").palette();
        const int difference = std::abs(qGray(palette.color(QPalette::Window).rgb()) - qGray(color.rgb()));
        EXPECT_GE(difference, 90) << color.name().toStdString();
    }
}

}  // namespace
