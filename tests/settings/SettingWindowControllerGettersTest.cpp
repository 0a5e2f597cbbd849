#include "platform/jobs/MainThread.h"
#include "platform/pdf/Color.h"
#include "platform/text/Font.h"
#include "platform/ui/ColorWell.h"
#include "tests/settings/SettingSheetTest.h"

#include <QComboBox>

#include <atomic>
#include <thread>

using namespace quillon;

namespace {

class SettingGetters : public test::SettingSheet {};

TEST_F(SettingGetters, APaddingPageIsAskedForByItsCheckBoxAndRow) {
    start();
    EXPECT_FALSE(controller().isAddPage());
    EXPECT_TRUE(controller().isAddBlankPage());
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    EXPECT_TRUE(controller().isAddPage());
    EXPECT_FALSE(controller().isAddBlankPage());
}

TEST_F(SettingGetters, TheAddedPageIsTheChosenFileNotTheTypedText) {
    start();
    EXPECT_TRUE(controller().addedPageUrl().isEmpty());
    click("appendPageCheck");
    clickRow("appendPageOptionRadio", 1);
    const QUrl chosen = QUrl::fromLocalFile(QStringLiteral("/tmp/chosen one.pdf"));
    panels_.answerNext({chosen});
    click("appendPageSelectButton");
    retype("appendPagePathField", QStringLiteral("/tmp/typed.pdf"));
    EXPECT_EQ(controller().addedPageUrl(), chosen);
}

TEST_F(SettingGetters, TheWatermarkIsItsCheckBoxAndField) {
    start();
    EXPECT_FALSE(controller().isAddWaterMark());
    EXPECT_FALSE(controller().getWaterMarkContent().isNull());
    click("addWatermarkCheck");
    type("addWatermarkField", QStringLiteral("Draft"));
    EXPECT_TRUE(controller().isAddWaterMark());
    EXPECT_EQ(controller().getWaterMarkContent(), QStringLiteral("Draft"));
}

TEST_F(SettingGetters, BookmarksAreTheirControls) {
    start();
    EXPECT_FALSE(controller().isAddBookmark());
    click("addBookmarkCheck");
    EXPECT_TRUE(controller().isAddBookmark());
    EXPECT_TRUE(controller().isKeepOriginalBookmark());
    clickRow("addBookmarkOptionRadio", 1);
    EXPECT_FALSE(controller().isKeepOriginalBookmark());
    EXPECT_FALSE(controller().isUseFileName());
    click("addBookmarkUseFilenameCheck");
    EXPECT_TRUE(controller().isUseFileName());
    EXPECT_FALSE(controller().isRemoveExtension());
    click("addBookmarkRemoveCheck");
    EXPECT_TRUE(controller().isRemoveExtension());
}

TEST_F(SettingGetters, AJobIsToldOnTheMainThreadWhetherToAddBookmarks) {
    start();
    click("addBookmarkCheck");
    std::atomic<int> answer = -1;
    std::thread job([&] {
        answer = controller().isAddBookmark() ? 1 : 0;
        MainThread::recheck();
    });
    MainThread::waitUntil([&] { return answer >= 0; });
    job.join();
    EXPECT_EQ(answer, 1);
}

TEST_F(SettingGetters, PageNumbersAreTheirControls) {
    start();
    EXPECT_FALSE(controller().isAddPageNumber());
    click("addPageNumberCheck");
    EXPECT_TRUE(controller().isAddPageNumber());
    type("addPageNumberBeginField", QStringLiteral("12"));
    type("addPageNumberOffsetField", QStringLiteral("3"));
    type("addPageNumberPrefixField", QStringLiteral("Page"));
    EXPECT_EQ(controller().getPageNumberBegin(), 12);
    EXPECT_EQ(controller().getPageNumberOffset(), 3);
    EXPECT_EQ(controller().getNextPageNumberPrefixString(), QStringLiteral("Page"));
}

TEST_F(SettingGetters, EmptyNumbersAreZeroAndAnEmptyPrefixIsNotAbsent) {
    start();
    EXPECT_EQ(controller().getPageNumberBegin(), 0);
    EXPECT_EQ(controller().getPageNumberOffset(), 0);
    EXPECT_FALSE(controller().getNextPageNumberPrefixString().isNull());
}

TEST_F(SettingGetters, NumbersBeyondTheRangeBecomeItsEnd) {
    start();
    click("addPageNumberCheck");
    type("addPageNumberBeginField", QStringLiteral("99999999999"));
    EXPECT_EQ(controller().getPageNumberBegin(), 2147483647);
}

TEST_F(SettingGetters, ThePositionIsACode) {
    start();
    click("addPageNumberCheck");
    EXPECT_EQ(controller().pageNumberPosition(), 1);
    choose("addPageNumberPositionBox", 0);
    EXPECT_EQ(controller().pageNumberPosition(), 0);
    choose("addPageNumberPositionBox", 2);
    EXPECT_EQ(controller().pageNumberPosition(), 2);
}

TEST_F(SettingGetters, AnyUnexpectedPositionIsTwo) {
    store("QUILLON_ADD_PAGE_NUMBER", 1);
    store("QUILLON_ADD_PAGE_NUMBER_POSITION", QStringLiteral("left buttom"));
    EXPECT_EQ(start().pageNumberPosition(), 2);
}

TEST_F(SettingGetters, AnEmptyPositionIsTwo) {
    start();
    box("addPageNumberPositionBox").setCurrentIndex(-1);
    EXPECT_EQ(controller().pageNumberPosition(), 2);
}

TEST_F(SettingGetters, TheAttributesAreTheFontOfTheBoxAndTheColourOfTheWell) {
    start();
    click("addPageNumberCheck");
    choose("addPageNumberFontBox", 1);
    type("addPageNumberSizeField", QStringLiteral("15"));
    chooseColor(QColor(255, 0, 51));
    // Neither the font name nor the colour that the example shows.
    controller().setCacheFontName(QStringLiteral("other"));
    controller().setCacheColor(Qt::blue);
    const TextAttributes attributes = controller().getStringAttr();
    ASSERT_EQ(attributes.size(), 3);
    const auto font = attributes.value(NSFontAttributeName).value<Font>();
    EXPECT_EQ(font.family(), test::secondFont());
    EXPECT_EQ(font.size(), 15.0);
    for (const QString& name : {NSForegroundColorAttributeName, NSStrikethroughColorAttributeName}) {
        const auto color = attributes.value(name).value<Color>();
        EXPECT_NEAR(color.red, 1, 0.001);
        EXPECT_NEAR(color.green, 0, 0.001);
        EXPECT_NEAR(color.blue, 0.2, 0.001);
        EXPECT_NEAR(color.alpha, 1, 0.001);
    }
}

TEST_F(SettingGetters, AnEmptySizeIsTheDefaultSize) {
    start();
    EXPECT_EQ(controller().getStringAttr().value(NSFontAttributeName).value<Font>().size(), Font::defaultSize);
}

TEST_F(SettingGetters, WithoutAFontOfTheNameThereAreNoAttributes) {
    start();
    box("addPageNumberFontBox").setCurrentIndex(-1);
    EXPECT_TRUE(controller().getStringAttr().isEmpty());
}

TEST_F(SettingGetters, PasswordsAndPermissionsAreTheirControls) {
    start();
    EXPECT_FALSE(controller().isUserEncrypt());
    EXPECT_FALSE(controller().isOwnerEncrypt());
    click("userPasswordCheck");
    type("userPasswordField", QStringLiteral("u"));
    click("ownerPasswordCheck");
    type("ownerPasswordField", QStringLiteral("o"));
    EXPECT_TRUE(controller().isUserEncrypt());
    EXPECT_EQ(controller().userEncryptPassword(), QStringLiteral("u"));
    EXPECT_TRUE(controller().isOwnerEncrypt());
    EXPECT_EQ(controller().ownerEncryptPassword(), QStringLiteral("o"));
}

TEST_F(SettingGetters, CopyingAndPrintingAreAllowedAtIndexOne) {
    start();
    click("ownerPasswordCheck");
    choose("ownerPasswordCopyBox", 0);
    EXPECT_FALSE(controller().isCopyAllowed());
    EXPECT_TRUE(controller().isPrintAllowed());
    choose("ownerPasswordCopyBox", 1);
    choose("ownerPasswordPrintBox", 0);
    EXPECT_TRUE(controller().isCopyAllowed());
    EXPECT_FALSE(controller().isPrintAllowed());
}

TEST_F(SettingGetters, DocumentInformationIsMadeFromTheFields) {
    start();
    controller().registerTitle(QStringLiteral("Report"));
    controller().registerAuthor(QStringLiteral("Ann"));
    controller().registerSubject(QStringLiteral("Sums"));
    controller().registerKeywords(QStringList{QStringLiteral("pdf"), QStringLiteral("merge")});
    controller().registerCreator(QStringLiteral("Writer"));
    retype("titleField", QStringLiteral("<%Original_Title%>"));
    retype("authorField", QStringLiteral(""));
    retype("subjectField", QStringLiteral("%Original_Title%"));
    EXPECT_EQ(controller().resolveTitle(), QStringLiteral("<Report>"));
    EXPECT_EQ(controller().resolveAuthor(), QStringLiteral("Ann"));
    EXPECT_EQ(controller().resolveSubject(), QStringLiteral("%Original_Title%"));
    EXPECT_EQ(controller().resolveKeywords(), QStringLiteral("pdf merge"));
    EXPECT_TRUE(controller().resolveCreator().contains(QStringLiteral("Quillon")));
}

}  // namespace
