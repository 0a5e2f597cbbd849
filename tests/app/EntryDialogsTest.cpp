#include "tests/app/MainWindowTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/ProtectedFile.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

using namespace quillon;
using test::find;

namespace {

/// The dialogs for one file of the list, and merges with what they have set.
class EntryDialogs : public test::MainWindowTest {
protected:
    [[nodiscard]] static SheetDialog& methodSheet() { return *sheet("MergeMethodWindow"); }
    [[nodiscard]] static SheetDialog& decryptSheet() { return *sheet("DecryptWindow"); }
    [[nodiscard]] static QLineEdit& field(const char* name) { return find<QLineEdit>(methodSheet(), name); }
    [[nodiscard]] static QLineEdit& passwordField() { return find<QLineEdit>(decryptSheet(), "passwordTextField"); }

    void openMethod(int row) {
        select(row);
        choose("actionMergeMethod");
        ASSERT_TRUE(methodSheet().isVisible());
    }
    static void chooseMethod(const char* radio) {
        auto& button = find<QRadioButton>(methodSheet(), radio);
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
    }
    static void retype(QLineEdit& edit, const char* text) {
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, QString::fromLatin1(text));
    }
    /// Sets the method of a row, and what goes with it, through the sheet.
    void setMethod(int row, const char* radio, const char* name = nullptr, const char* value = nullptr) {
        openMethod(row);
        chooseMethod(radio);
        if (name != nullptr) retype(field(name), value);
        test::click(find<QPushButton>(methodSheet(), "applyButton"));
        EXPECT_FALSE(methodSheet().isVisible());
    }
    [[nodiscard]] QString shown(const char* column, int row) {
        return list().tableViewObjectValueForTableColumn(QString::fromLatin1(column), row).toString();
    }

    [[nodiscard]] QUrl lockedPdf(const char* user, const char* owner,
                                 const QStringList& options = {QStringLiteral("256")}) {
        const std::string plain = dir_.write("plain.pdf", test::PdfFixture("p", 2).bytes());
        test::protectFile(plain, dir_.file("locked.pdf"), QString::fromUtf8(user), QString::fromUtf8(owner), options);
        return urlOf(dir_.file("locked.pdf"));
    }
    void openDecrypt(int row) {
        select(row);
        choose("actionDecrypt");
        ASSERT_TRUE(decryptSheet().isVisible());
    }
    static void tryPassword(const char* password) {
        passwordField().selectAll();
        passwordField().insert(QString::fromUtf8(password));  // as an input method does: it may be any script
        test::click(find<QPushButton>(decryptSheet(), "okButton"));
        QCoreApplication::processEvents();
    }
    static void cancelDecrypt() { test::click(find<QPushButton>(decryptSheet(), "cancelButton")); }

    [[nodiscard]] std::string merged() {
        merge();
        std::string result;
        for (const std::string& mark : test::pageMarks(dir_.file("out.pdf"))) result += mark + ' ';
        return result;
    }
};

TEST_F(EntryDialogs, ApplyStoresTheMethodAndItsValue) {
    add({pdf("a", 5)});
    setMethod(0, "partRadio", "partTextField", "2-4,1");
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodPart);
    EXPECT_EQ(entry(0).value(), QStringLiteral("2-4,1"));
    setMethod(0, "repeatRadio");
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodRepeat);
    EXPECT_EQ(entry(0).value(), QStringLiteral(""));
    setMethod(0, "mixReverseRadio", "mixReverseTextField", "2");
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodCrossReverse);
    EXPECT_EQ(entry(0).value(), QStringLiteral("2"));
    setMethod(0, "wholeRadio");
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodWhole);
    EXPECT_EQ(entry(0).value(), QStringLiteral(""));
    EXPECT_FALSE(entry(0).value().isNull());
}

TEST_F(EntryDialogs, CancelLeavesTheEntryAsItWas) {
    add({pdf("a", 5)});
    setMethod(0, "partRadio", "partTextField", "2");
    openMethod(0);
    chooseMethod("repeatRadio");
    test::click(find<QPushButton>(methodSheet(), "cancelButton"));
    EXPECT_FALSE(methodSheet().isVisible());
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodPart);
    EXPECT_EQ(entry(0).value(), QStringLiteral("2"));
}

TEST_F(EntryDialogs, TheSheetIsMadeForTheSelectedRow) {
    add({pdf("a", 5), pdf("b", 5)});
    setMethod(1, "mixReverseRadio", "mixReverseTextField", "3");
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodWhole);
    openMethod(0);
    EXPECT_TRUE(find<QRadioButton>(methodSheet(), "wholeRadio").isChecked());
    test::click(find<QPushButton>(methodSheet(), "cancelButton"));
    field("mixReverseTextField").clear();
    openMethod(1);
    EXPECT_TRUE(find<QRadioButton>(methodSheet(), "mixReverseRadio").isChecked());
    EXPECT_EQ(field("mixReverseTextField").text(), QStringLiteral("3"));
}

TEST_F(EntryDialogs, PartIsMergedAsItsRangeSays) {
    add({pdf("a", 5)});
    setMethod(0, "partRadio", "partTextField", "5,1-3");
    EXPECT_EQ(merged(), "a5 a1 a2 a3 ");
}

TEST_F(EntryDialogs, FrontsBacksAndASeparatorAreWoven) {
    add({pdf("A", 5), pdf("B", 3), pdf("R", 1)});
    setMethod(0, "mixRadio", "mixTextField", "2");
    setMethod(1, "mixReverseRadio", "mixReverseTextField", "1");
    setMethod(2, "repeatRadio");
    EXPECT_EQ(merged(), "A1 B3 R1 A3 B2 R1 A5 B1 R1 ");
}

TEST_F(EntryDialogs, ACrossFileBelowARepeatedOneComesBeforeItInItsRound) {
    add({pdf("A", 2), pdf("R", 1), pdf("B", 2)});
    setMethod(0, "mixRadio", "mixTextField", "1");
    setMethod(1, "repeatRadio");
    setMethod(2, "mixRadio", "mixTextField", "1");
    EXPECT_EQ(merged(), "A1 B1 R1 A2 B2 R1 ");
}

TEST_F(EntryDialogs, ALoneCrossFileIsThinned) {
    add({pdf("A", 5)});
    setMethod(0, "mixRadio", "mixTextField", "2");
    EXPECT_EQ(merged(), "A1 A3 A5 ");
}

TEST_F(EntryDialogs, ALoneCrossReverseFileIsThinnedFromTheBack) {
    add({pdf("A", 5)});
    setMethod(0, "mixReverseRadio", "mixReverseTextField", "2");
    EXPECT_EQ(merged(), "A5 A3 A1 ");
}

TEST_F(EntryDialogs, CancellingThePasswordLeavesTheFileLocked) {
    add({lockedPdf("secret", "owner")});
    openDecrypt(0);
    cancelDecrypt();
    EXPECT_FALSE(decryptSheet().isVisible());
    EXPECT_FALSE(entry(0).isDecrypted());
    EXPECT_EQ(shown("Password", 0), QStringLiteral("Need"));
    choose("actionMerge");
    EXPECT_EQ(test::takeAlert(), QStringLiteral("Error ! There are file(s) not DECRYPTED !"));
    EXPECT_TRUE(panels_.savePanels.empty());
}

TEST_F(EntryDialogs, AWrongPasswordBringsTheSheetBackWithItsText) {
    add({lockedPdf("secret", "owner")});
    openDecrypt(0);
    tryPassword("wrong");
    EXPECT_TRUE(decryptSheet().isVisible());
    EXPECT_TRUE(decryptSheet().isRunning());
    EXPECT_EQ(passwordField().text(), QStringLiteral("wrong"));
    EXPECT_EQ(test::takeAlert(), QString());
    EXPECT_FALSE(entry(0).isDecrypted());
    EXPECT_TRUE(entry(0).password().isNull());
    cancelDecrypt();
    EXPECT_FALSE(decryptSheet().isVisible());
}

TEST_F(EntryDialogs, AnEmptyPasswordBringsTheSheetBack) {
    add({lockedPdf("secret", "owner")});
    openDecrypt(0);
    tryPassword("");
    EXPECT_TRUE(decryptSheet().isRunning());
    EXPECT_FALSE(entry(0).isDecrypted());
}

TEST_F(EntryDialogs, APasswordThatForbidsCopyingIsNeverAccepted) {
    add({lockedPdf("secret", "owner", {QStringLiteral("256"), QStringLiteral("--extract=n")})});
    openDecrypt(0);
    tryPassword("secret");
    EXPECT_TRUE(decryptSheet().isRunning());
    EXPECT_FALSE(entry(0).isDecrypted());
    tryPassword("owner");
    EXPECT_FALSE(decryptSheet().isVisible());
    EXPECT_TRUE(entry(0).isDecrypted());
    EXPECT_EQ(merged(), "p1 p2 ");
}

TEST_F(EntryDialogs, AnAcceptedPasswordUnlocksTheRow) {
    add({lockedPdf("пароль", "owner")});
    openDecrypt(0);
    tryPassword("wrong");
    tryPassword("пароль");
    EXPECT_FALSE(decryptSheet().isVisible());
    EXPECT_TRUE(entry(0).isDecrypted());
    EXPECT_EQ(entry(0).password(), QStringLiteral("пароль"));
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
    EXPECT_TRUE(test::waitFor([this] { return !action("actionDecrypt").isEnabled(); }));
    EXPECT_EQ(merged(), "p1 p2 ");
}

TEST_F(EntryDialogs, AFileThatOpensByItselfNeedsTheOwnersPassword) {
    add({lockedPdf("", "owner")});
    EXPECT_EQ(shown("Password", 0), QStringLiteral("Need"));
    openDecrypt(0);
    tryPassword("");
    EXPECT_TRUE(decryptSheet().isRunning());
    tryPassword("owner");
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
    EXPECT_EQ(merged(), "p1 p2 ");
}

TEST_F(EntryDialogs, SettingsOpensItsSheetAndCancelHidesIt) {
    choose("actionSettings");
    SheetDialog& settings = *sheet("SettingWindow");
    EXPECT_TRUE(settings.isVisible());
    test::click(find<QPushButton>(settings, "cancelButton"));
    EXPECT_FALSE(settings.isVisible());
    EXPECT_FALSE(settings.isRunning());
}

TEST_F(EntryDialogs, SheetsAreLoadedWithTheWindow) {
    for (const char* name : {"SettingWindow", "DecryptWindow", "MergeMethodWindow"})
        EXPECT_NE(sheet(name), nullptr) << name;
}

}  // namespace
