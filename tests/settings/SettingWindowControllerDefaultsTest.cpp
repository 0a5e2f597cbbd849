#include "platform/ui/ColorWell.h"
#include "platform/ui/RadioMatrix.h"
#include "tests/settings/SettingSheetTest.h"
#include "tests/support/Process.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>

#include <csignal>
#include <unistd.h>

using namespace quillon;

namespace {

class SettingDefaults : public test::SettingSheet {
protected:
    using Flags = SettingWindowController::ChangeFlags;

    /// Switches page numbers on and fills in what the check asks for.
    void numberPages(const char* begin = "1", const char* offset = "1") {
        click("addPageNumberCheck");
        retype("addPageNumberBeginField", QString::fromLatin1(begin));
        retype("addPageNumberOffsetField", QString::fromLatin1(offset));
    }
};

TEST_F(SettingDefaults, TheFirstRunShowsTheFactoryValues) {
    start();
    for (const char* name : {"appendPageCheck", "addWatermarkCheck", "addBookmarkCheck", "addPageNumberCheck",
                             "userPasswordCheck", "ownerPasswordCheck"}) {
        EXPECT_EQ(shown(name), QVariant(false)) << name;
    }
    EXPECT_EQ(shown("titleField"), QStringLiteral("%Original_Title%"));
    EXPECT_EQ(shown("authorField"), QStringLiteral("%Original_Author%"));
    EXPECT_EQ(shown("subjectField"), QStringLiteral("%Original_Subject%"));
    EXPECT_EQ(shown("keywordsField"), QStringLiteral("%Original_Keywords%"));
    EXPECT_EQ(shown("addPageNumberPositionBox"), QStringLiteral("Middle Buttom"));
    EXPECT_EQ(shown("imageDPIField"), QStringLiteral("300"));
    EXPECT_TRUE(controller().isCopyAllowed());
    EXPECT_TRUE(controller().isPrintAllowed());
    EXPECT_EQ(well().color(), QColor(Qt::black));
    EXPECT_EQ(controller().cacheColor(), QColor(Qt::black));
    EXPECT_EQ(box("addPageNumberFontBox").currentIndex(), 0);
    EXPECT_EQ(controller().changeFlags(), Flags());
    EXPECT_FALSE(isEnabled("appendPageSelectButton"));
    EXPECT_FALSE(isEnabled("addBookmarkRemoveCheck"));
}

TEST_F(SettingDefaults, ABeginOfZeroIsStoredAsMinusOneAndComesBackAsZero) {
    start();
    numberPages("0");
    apply();
    EXPECT_EQ(storedInteger("QUILLON_ADD_PAGE_NUMBER_BEGIN"), -1);
    restart();
    EXPECT_EQ(shown("addPageNumberBeginField"), QStringLiteral("0"));
}

TEST_F(SettingDefaults, ABeginOfFiveComesBackAsFive) {
    start();
    numberPages("5");
    apply();
    EXPECT_EQ(storedInteger("QUILLON_ADD_PAGE_NUMBER_BEGIN"), 5);
    restart();
    EXPECT_EQ(shown("addPageNumberBeginField"), QStringLiteral("5"));
}

TEST_F(SettingDefaults, AStoredBeginOfMinusThreeLeavesTheFieldUnchanged) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_BEGIN", -3);
    start();
    EXPECT_EQ(shown("addPageNumberBeginField"), QStringLiteral(""));
    retype("addPageNumberBeginField", QStringLiteral("8"));
    controller().restoreUserDefaults();
    EXPECT_EQ(shown("addPageNumberBeginField"), QStringLiteral("8"));
}

TEST_F(SettingDefaults, AnEmptyBeginIsStoredAsZero) {
    start();
    click("addPageNumberCheck");
    controller().saveUserDefault();
    EXPECT_TRUE(isStored("QUILLON_ADD_PAGE_NUMBER_BEGIN"));
    EXPECT_EQ(storedInteger("QUILLON_ADD_PAGE_NUMBER_BEGIN"), 0);
}

TEST_F(SettingDefaults, AStoredStepOfZeroComesBackAsOne) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_OFFSET", 0);
    start();
    EXPECT_EQ(shown("addPageNumberOffsetField"), QStringLiteral("1"));
}

TEST_F(SettingDefaults, AStoredStepBelowZeroIsShownAsItIs) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_OFFSET", -2);
    EXPECT_EQ(start().getPageNumberOffset(), -2);
}

TEST_F(SettingDefaults, WithPageNumbersStoredOffTheirDetailsAreNotRestored) {
    store("QUILLON_ADD_PAGE_NUMBER", 0);
    store("QUILLON_ADD_PAGE_NUMBER_BEGIN", 9);
    store("QUILLON_ADD_PAGE_NUMBER_OFFSET", 9);
    store("QUILLON_ADD_PAGE_NUMBER_PREFIX", QStringLiteral("P"));
    store("QUILLON_ADD_PAGE_NUMBER_SIZE", 9);
    store("QUILLON_ADD_PAGE_NUMBER_POSITION", QStringLiteral("Right Buttom"));
    store("QUILLON_ADD_PAGE_NUMBER_FONT", test::secondFont());
    store("QUILLON_ADD_PAGE_NUMBER_COLOR", QByteArray("#ffff0000"));
    start();
    for (const char* name : {"addPageNumberBeginField", "addPageNumberOffsetField", "addPageNumberPrefixField",
                             "addPageNumberSizeField"}) {
        EXPECT_EQ(shown(name), QStringLiteral("")) << name;
    }
    EXPECT_EQ(shown("addPageNumberPositionBox"), QStringLiteral("Middle Buttom"));
    EXPECT_EQ(box("addPageNumberFontBox").currentIndex(), 0);
    EXPECT_EQ(well().color(), QColor(Qt::black));
}

TEST_F(SettingDefaults, ApplyingTheFactoryValuesWritesEveryGroupButNotTheResolution) {
    storeGroupsOn();
    start();
    click("defaultButton");
    apply();
    for (const char* key : {"QUILLON_APPEND_PAGE", "QUILLON_ADD_WATERMARK", "QUILLON_ADD_BOOKMARK",
                            "QUILLON_ADD_PAGE_NUMBER", "QUILLON_USER_PASSWORD_STATE", "QUILLON_OWNER_PASSWORD_STATE"}) {
        EXPECT_TRUE(isStored(key)) << key;
        EXPECT_EQ(storedInteger(key), 0) << key;
    }
    EXPECT_EQ(storedText("QUILLON_TITLE"), QStringLiteral("%Original_Title%"));
    EXPECT_EQ(storedText("QUILLON_AUTHOR"), QStringLiteral("%Original_Author%"));
    EXPECT_EQ(storedText("QUILLON_SUBJECT"), QStringLiteral("%Original_Subject%"));
    EXPECT_EQ(storedText("QUILLON_KEYWORDS"), QStringLiteral("%Original_Keywords%"));
    EXPECT_FALSE(isStored("QUILLON_IMAGE_DPI"));
}

TEST_F(SettingDefaults, TheResolutionIsReadButNeverWritten) {
    store("QUILLON_IMAGE_DPI", 150);
    start();
    EXPECT_EQ(shown("imageDPIField"), QStringLiteral("150"));
    retype("imageDPIField", QStringLiteral("600"));
    EXPECT_TRUE(controller().changeFlags().isDPIChange);
    apply();
    EXPECT_FALSE(controller().changeFlags().isDPIChange);
    EXPECT_EQ(storedInteger("QUILLON_IMAGE_DPI"), 150);
}

TEST_F(SettingDefaults, AStoredResolutionOfZeroChangesNothing) {
    store("QUILLON_IMAGE_DPI", 0);
    start();
    EXPECT_EQ(shown("imageDPIField"), QStringLiteral("300"));
}

TEST_F(SettingDefaults, CancellingRestoresWhatWasAppliedLast) {
    start();
    click("addWatermarkCheck");
    type("addWatermarkField", QStringLiteral("Draft"));
    retype("titleField", QStringLiteral("Applied"));
    apply();
    retype("titleField", QStringLiteral("Edited"));
    retype("addWatermarkField", QStringLiteral("Edited"));
    cancel();
    EXPECT_EQ(shown("titleField"), QStringLiteral("Applied"));
    EXPECT_EQ(controller().getWaterMarkContent(), QStringLiteral("Draft"));
    EXPECT_EQ(controller().changeFlags(), Flags());
}

TEST_F(SettingDefaults, AChangeIsInForceBeforeItIsApplied) {
    start();
    click("addWatermarkCheck");
    type("addWatermarkField", QStringLiteral("Draft"));
    EXPECT_TRUE(controller().isAddWaterMark());
    EXPECT_EQ(controller().getWaterMarkContent(), QStringLiteral("Draft"));
    EXPECT_FALSE(isStored("QUILLON_ADD_WATERMARK"));
}

TEST_F(SettingDefaults, OnlyGroupsThatWereTouchedAreWritten) {
    start();
    retype("subjectField", QStringLiteral("S"));
    apply();
    EXPECT_EQ(storedText("QUILLON_SUBJECT"), QStringLiteral("S"));
    for (const SettingKey& key : settingKeys()) {
        if (key.setting != Setting::subject) {
            EXPECT_FALSE(isStored(key.key.toLatin1().constData())) << key.key.toStdString();
        }
    }
    EXPECT_EQ(controller().changeFlags(), Flags());
}

TEST_F(SettingDefaults, ThePathIsOnlyWrittenForAPageFromAFile) {
    start();
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    type("appendPagePathField", QStringLiteral("/tmp/x.pdf"));
    clickRow("appendPageOptionRadio", 0);
    apply();
    EXPECT_EQ(storedInteger("QUILLON_APPEND_PAGE_OPTION"), 0);
    EXPECT_FALSE(isStored("QUILLON_APPEND_PAGE_FILE_PATH"));
    clickRow("appendPageOptionRadio", 1);
    apply();
    EXPECT_EQ(storedInteger("QUILLON_APPEND_PAGE_OPTION"), 1);
    EXPECT_EQ(storedText("QUILLON_APPEND_PAGE_FILE_PATH"), QStringLiteral("/tmp/x.pdf"));
}

TEST_F(SettingDefaults, TheRemovalOfExtensionsIsOnlyWrittenWithFileNames) {
    start();
    click("addBookmarkCheck");
    apply();
    EXPECT_EQ(storedInteger("QUILLON_ADD_BOOKMARK_USE_FILENAME"), 0);
    EXPECT_FALSE(isStored("QUILLON_ADD_BOOKMARK_REMOVE_EXTENSION"));
    click("addBookmarkUseFilenameCheck");
    click("addBookmarkRemoveCheck");
    clickRow("addBookmarkOptionRadio", 1);
    apply();
    EXPECT_EQ(storedInteger("QUILLON_ADD_BOOKMARK_OPTION"), 1);
    EXPECT_EQ(storedInteger("QUILLON_ADD_BOOKMARK_USE_FILENAME"), 1);
    EXPECT_EQ(storedInteger("QUILLON_ADD_BOOKMARK_REMOVE_EXTENSION"), 1);
}

TEST_F(SettingDefaults, AGroupThatIsSwitchedOffWritesOnlyThat) {
    store("QUILLON_ADD_WATERMARK", 1);
    store("QUILLON_ADD_WARTERMARK_CONTENT", QStringLiteral("old"));
    start();
    retype("addWatermarkField", QStringLiteral("new"));
    click("addWatermarkCheck");
    apply();
    EXPECT_EQ(storedInteger("QUILLON_ADD_WATERMARK"), 0);
    EXPECT_EQ(storedText("QUILLON_ADD_WARTERMARK_CONTENT"), QStringLiteral("old"));
}

TEST_F(SettingDefaults, TheFactoryResetLeavesThePositionsTextAsFontName) {
    start();
    EXPECT_EQ(controller().cacheFontName(), QStringLiteral("Middle Buttom"));
    numberPages();
    apply();
    EXPECT_EQ(storedText("QUILLON_ADD_PAGE_NUMBER_FONT"), QStringLiteral("Middle Buttom"));
}

TEST_F(SettingDefaults, AChosenFontIsWrittenAndComesBack) {
    start();
    numberPages();
    choose("addPageNumberFontBox", 1);
    apply();
    EXPECT_EQ(storedText("QUILLON_ADD_PAGE_NUMBER_FONT"), test::secondFont());
    restart();
    EXPECT_EQ(shown("addPageNumberFontBox"), test::secondFont());
    EXPECT_EQ(controller().cacheFontName(), test::secondFont());
}

TEST_F(SettingDefaults, WithoutAStoredFontTheBoxesItemIsTaken) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    start();
    EXPECT_EQ(controller().cacheFontName(), box("addPageNumberFontBox").itemText(0));
}

TEST_F(SettingDefaults, AStoredFontThatIsNotInstalledIsKeptAndSelectsNothing) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_FONT", QStringLiteral("No Such Font"));
    start();
    EXPECT_EQ(controller().cacheFontName(), QStringLiteral("No Such Font"));
    EXPECT_EQ(shown("addPageNumberFontBox"), QStringLiteral(""));
    EXPECT_TRUE(controller().getStringAttr().isEmpty());
}

TEST_F(SettingDefaults, AMissingColourMakesTheColourBlackButLeavesTheWell) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    start();
    chooseColor(Qt::green);
    controller().restoreUserDefaults();
    EXPECT_EQ(controller().cacheColor(), QColor(Qt::black));
    EXPECT_EQ(well().color(), QColor(Qt::green));
}

TEST_F(SettingDefaults, AChosenColourIsWrittenAndComesBack) {
    start();
    numberPages();
    chooseColor(QColor(18, 52, 86));
    apply();
    restart();
    EXPECT_EQ(well().color(), QColor(18, 52, 86));
    EXPECT_EQ(controller().cacheColor(), QColor(18, 52, 86));
}

TEST_F(SettingDefaults, TheResetKeepsTextsAndNumbersThatBelongToOptions) {
    storeGroupsOn();
    store("QUILLON_ADD_WARTERMARK_CONTENT", QStringLiteral("Draft"));
    store("QUILLON_ADD_PAGE_NUMBER_BEGIN", 3);
    store("QUILLON_USER_PASSWORD", QStringLiteral("u"));
    store("QUILLON_APPEND_PAGE_FILE_PATH", QStringLiteral("/tmp/x.pdf"));
    store("QUILLON_APPEND_PAGE_OPTION", 1);
    start();
    click("defaultButton");
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(shown("addWatermarkField"), QStringLiteral("Draft"));
    EXPECT_EQ(shown("addPageNumberBeginField"), QStringLiteral("3"));
    EXPECT_EQ(shown("userPasswordField"), QStringLiteral("u"));
    EXPECT_EQ(shown("appendPagePathField"), QStringLiteral("/tmp/x.pdf"));
    EXPECT_EQ(radio("appendPageOptionRadio").selectedRow(), 1);
    EXPECT_EQ(controller().changeFlags(), (Flags{true, true, true, true, true, true, true, true, true, true, true}));
}

TEST_F(SettingDefaults, TheResetFollowedByCancelRestoresWhatWasSaved) {
    storeGroupsOn();
    store("QUILLON_TITLE", QStringLiteral("T"));
    start();
    click("defaultButton");
    cancel();
    EXPECT_EQ(shown("titleField"), QStringLiteral("T"));
    EXPECT_TRUE(controller().isAddWaterMark());
    EXPECT_EQ(storedInteger("QUILLON_ADD_WATERMARK"), 1);
    EXPECT_EQ(controller().changeFlags(), Flags());
}

TEST_F(SettingDefaults, AStoredPathIsRestoredWhetherOrNotThereIsSuchAFile) {
    store("QUILLON_APPEND_PAGE", 1);
    store("QUILLON_APPEND_PAGE_OPTION", 1);
    store("QUILLON_APPEND_PAGE_FILE_PATH", QStringLiteral("/no/such file.pdf"));
    start();
    EXPECT_EQ(controller().addedPageUrl(), QUrl::fromLocalFile(QStringLiteral("/no/such file.pdf")));
    EXPECT_EQ(shown("appendPagePathField"), QStringLiteral("/no/such file.pdf"));
}

TEST_F(SettingDefaults, AMissingPathEmptiesTheFieldButKeepsTheLocation) {
    store("QUILLON_APPEND_PAGE", 1);
    start();
    controller().setCachePathURL(QUrl::fromLocalFile(QStringLiteral("/tmp/kept.pdf")));
    field("appendPagePathField").setText(QStringLiteral("something"));
    controller().restoreUserDefaults();
    EXPECT_EQ(shown("appendPagePathField"), QStringLiteral(""));
    EXPECT_EQ(controller().addedPageUrl(), QUrl::fromLocalFile(QStringLiteral("/tmp/kept.pdf")));
}

TEST_F(SettingDefaults, PasswordsAreStoredAsTheyWereTyped) {
    start();
    click("userPasswordCheck");
    type("userPasswordField", QStringLiteral("  s3cret\"=;"));
    click("ownerPasswordCheck");
    type("ownerPasswordField", QStringLiteral("own"));
    choose("ownerPasswordPrintBox", 0);
    apply();
    EXPECT_EQ(storedText("QUILLON_USER_PASSWORD"), QStringLiteral("  s3cret\"=;"));
    EXPECT_EQ(storedText("QUILLON_OWNER_PASSWORD"), QStringLiteral("own"));
    EXPECT_EQ(storedInteger("QUILLON_ALLOW_PRINT"), 0);
    EXPECT_EQ(storedInteger("QUILLON_ALLOW_COPY"), 1);
    restart();
    EXPECT_EQ(controller().userEncryptPassword(), QStringLiteral("  s3cret\"=;"));
    EXPECT_FALSE(controller().isPrintAllowed());
    EXPECT_TRUE(controller().isCopyAllowed());
}

TEST_F(SettingDefaults, AppliedValuesSurviveAKill) {
    start();
    const int ended = test::inChildProcess([this] {
        click("addWatermarkCheck");
        type("addWatermarkField", QStringLiteral("Draft"));
        retype("titleField", QStringLiteral("Kept"));
        apply();
        ::kill(::getpid(), SIGKILL);
        return 0;
    });
    EXPECT_EQ(ended, 100 + SIGKILL);
    restart();
    EXPECT_TRUE(controller().isAddWaterMark());
    EXPECT_EQ(controller().getWaterMarkContent(), QStringLiteral("Draft"));
    EXPECT_EQ(shown("titleField"), QStringLiteral("Kept"));
}

// What a settings file may hold that no sheet has written.

TEST_F(SettingDefaults, RowsAndIndexesOutOfRangeBecomeTheNearest) {
    storeGroupsOn();
    store("QUILLON_APPEND_PAGE_OPTION", 99);
    store("QUILLON_ADD_BOOKMARK_OPTION", -5);
    store("QUILLON_ALLOW_COPY", 7);
    store("QUILLON_ALLOW_PRINT", -1);
    start();
    EXPECT_FALSE(controller().isAddBlankPage());
    EXPECT_TRUE(controller().isKeepOriginalBookmark());
    EXPECT_TRUE(controller().isCopyAllowed());
    EXPECT_FALSE(controller().isPrintAllowed());
}

TEST_F(SettingDefaults, ValuesOfWrongTypesDoNoHarm) {
    QByteArray file;
    const char* values[] = {"x", "@ByteArray(\\0\\xff)", "1, 2, 3", "@Rect(1 2 3 4)", "@Invalid()", ""};
    for (std::size_t number = 0; number < settingKeys().size(); ++number) {
        const SettingKey& key = settingKeys().at(number);
        const bool isSwitch = key.type == StoredType::checkState;
        file += key.key.toLatin1() + '=' + (isSwitch ? "1" : values[number % std::size(values)]) + '\n';
    }
    storeFile(file + "QUILLON_NOT_A_KEY=1\n[Elsewhere]\nx=y\n");
    start();
    EXPECT_TRUE(controller().isAddPageNumber());
    EXPECT_TRUE(controller().cacheColor().isValid());
    click("appendPageCheck");
    cancel();
    EXPECT_TRUE(controller().isAddPage());
}

TEST_F(SettingDefaults, NumbersAtTheEndsOfTheRangeAreShownAsTheyAre) {
    storeGroupsOn();
    store("QUILLON_ADD_PAGE_NUMBER_BEGIN", 2147483647);
    store("QUILLON_ADD_PAGE_NUMBER_OFFSET", -2147483647 - 1);
    store("QUILLON_ADD_PAGE_NUMBER_SIZE", 2147483647);
    store("QUILLON_IMAGE_DPI", -2147483647 - 1);
    start();
    EXPECT_EQ(controller().getPageNumberBegin(), 2147483647);
    EXPECT_EQ(controller().getPageNumberOffset(), -2147483647 - 1);
    EXPECT_EQ(shown("addPageNumberSizeField"), QStringLiteral("2147483647"));
    EXPECT_EQ(shown("imageDPIField"), QStringLiteral("-2147483648"));
    static_cast<void>(sheet().grab());
}

TEST_F(SettingDefaults, LongAndStrangeTextsAreTakenAsTheyAre) {
    storeGroupsOn();
    const QString strange = QStringLiteral("two\nlines\r\tand ") + QChar::Null + QStringLiteral(" \u202e\U0001F600");
    store("QUILLON_ADD_WARTERMARK_CONTENT", strange);
    store("QUILLON_ADD_PAGE_NUMBER_PREFIX", QString(10'000, u'p'));
    store("QUILLON_TITLE", QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b"));
    store("QUILLON_APPEND_PAGE_FILE_PATH", strange);
    store("QUILLON_ADD_PAGE_NUMBER_POSITION", strange);
    store("QUILLON_USER_PASSWORD", strange);
    store("QUILLON_OWNER_PASSWORD", QStringLiteral("o"));
    start();
    EXPECT_EQ(controller().getWaterMarkContent(), strange);
    EXPECT_EQ(controller().getNextPageNumberPrefixString(), QString(10'000, u'p'));
    EXPECT_TRUE(shown("titleField").toString().startsWith(u'a'));
    EXPECT_EQ(controller().pageNumberPosition(), 2);
    static_cast<void>(sheet().grab());
    retype("authorField", QStringLiteral("A"));
    type("addWatermarkField", QStringLiteral("!"));
    apply();
    EXPECT_EQ(storedText("QUILLON_ADD_WARTERMARK_CONTENT"), strange + QLatin1Char('!'));
}

TEST_F(SettingDefaults, ATextLongerThanAFieldHoldsIsCut) {
    storeGroupsOn();
    store("QUILLON_ADD_WARTERMARK_CONTENT", QString(1'000'000, u'w'));
    start();
    const QString content = controller().getWaterMarkContent();
    EXPECT_EQ(content, QString(content.size(), u'w'));
    EXPECT_EQ(content.size(), field("addWatermarkField").maxLength());
}

TEST_F(SettingDefaults, ADamagedFileGivesTheFactoryValuesAndIsKeptAside) {
    storeFile("QUILLON_ADD_WATERMARK=1\n\x80\xff\0garbage");
    start();
    EXPECT_FALSE(controller().isAddWaterMark());
    EXPECT_TRUE(QFile::exists(path_ + QStringLiteral(".damaged")));
}

}  // namespace
