#include "platform/ui/PopUpButton.h"
#include "tests/settings/SettingSheetTest.h"
#include "tests/support/ui/Windows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

#include <map>

using namespace quillon;

namespace {

class SettingLayout : public test::SettingSheet {
protected:
    SettingLayout() {
        storeGroupsOn();
        store("QUILLON_APPEND_PAGE_OPTION", 1);
        start();
    }

    QTabWidget& tabs() { return test::find<QTabWidget>(sheet(), "tabs"); }

    static QChar mnemonicOf(const QString& text) {
        const qsizetype at = text.indexOf(u'&');
        return at < 0 || at + 1 == text.size() ? QChar() : text.at(at + 1).toUpper();
    }

    static void note(std::map<QChar, QString>& known, const QString& text) {
        const QChar key = mnemonicOf(text);
        if (key.isNull()) return;
        EXPECT_TRUE(known.emplace(key, text).second) << text.toStdString() << " and " << known[key].toStdString();
    }
};

TEST_F(SettingLayout, EverythingFitsOnASmallScreen) {
    EXPECT_LE(sheet().minimumSizeHint().width(), 1200);
    EXPECT_LE(sheet().minimumSizeHint().height(), 680);
}

TEST_F(SettingLayout, NoTextIsClipped) {
    for (int index = 0; index < tabs().count(); ++index) {
        tabs().setCurrentIndex(index);
        QCoreApplication::processEvents();
        const auto buttons = tabs().widget(index)->findChildren<QAbstractButton*>();
        for (const QAbstractButton* button : buttons) {
            EXPECT_GE(button->width(), button->sizeHint().width()) << button->objectName().toStdString();
            EXPECT_GE(button->height(), button->minimumSizeHint().height()) << button->objectName().toStdString();
        }
        const auto labels = tabs().widget(index)->findChildren<QLabel*>();
        for (const QLabel* label : labels) {
            if (!label->wordWrap()) {
                EXPECT_GE(label->width(), label->minimumSizeHint().width()) << label->objectName().toStdString();
            }
        }
        const auto boxes = tabs().widget(index)->findChildren<QComboBox*>();
        for (const QComboBox* box : boxes) {
            EXPECT_GE(box->width(), box->minimumSizeHint().width()) << box->objectName().toStdString();
        }
    }
}

TEST_F(SettingLayout, EveryFieldAndBoxHasACaptionWithAMnemonic) {
    const auto labels = sheet().findChildren<QLabel*>();
    QList<QWidget*> captioned;
    for (const QLabel* label : labels) {
        if (label->buddy() == nullptr) continue;
        captioned << label->buddy();
        EXPECT_FALSE(mnemonicOf(label->text()).isNull()) << label->objectName().toStdString();
    }
    QWidgetList controls;
    for (auto* field : sheet().findChildren<QLineEdit*>()) controls << field;
    for (auto* box : sheet().findChildren<QComboBox*>()) controls << box;
    controls << &control("colorWell");
    EXPECT_EQ(controls.size(), 18);
    for (QWidget* each : controls) EXPECT_EQ(captioned.count(each), 1) << each->objectName().toStdString();
}

TEST_F(SettingLayout, NoMnemonicIsGivenTwiceOnATab) {
    for (int index = 0; index < tabs().count(); ++index) {
        std::map<QChar, QString> known;
        for (int other = 0; other < tabs().count(); ++other) note(known, tabs().tabText(other));
        for (const char* name : {"defaultButton", "cancelButton", "applyButton"}) {
            note(known, test::find<QPushButton>(sheet(), name).text());
        }
        const auto buttons = tabs().widget(index)->findChildren<QAbstractButton*>();
        for (const QAbstractButton* button : buttons) note(known, button->text());
        const auto labels = tabs().widget(index)->findChildren<QLabel*>();
        for (const QLabel* label : labels) note(known, label->text());
    }
}

TEST_F(SettingLayout, EveryControlHasANameForScreenReaders) {
    const auto controls = tabs().findChildren<QWidget*>();
    for (const QWidget* control : controls) {
        // What has no name in the interface file is a part of a control, such as the list of a box.
        const QString& name = control->objectName();
        if (control->focusPolicy() == Qt::NoFocus || name.isEmpty() || name.startsWith(QLatin1String("qt_"))) continue;
        const auto* button = qobject_cast<const QAbstractButton*>(control);
        const bool named = !control->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty());
        EXPECT_TRUE(named) << control->objectName().toStdString() << ' ' << control->metaObject()->className();
    }
}

TEST_F(SettingLayout, PasswordsAreHiddenAsTheyAreTyped) {
    EXPECT_EQ(field("userPasswordField").echoMode(), QLineEdit::Password);
    EXPECT_EQ(field("ownerPasswordField").echoMode(), QLineEdit::Password);
}

TEST_F(SettingLayout, ApplyIsTheDefaultButtonAndDefaultStandsAtTheLeft) {
    auto& apply = test::find<QPushButton>(sheet(), "applyButton");
    auto& cancel = test::find<QPushButton>(sheet(), "cancelButton");
    auto& reset = test::find<QPushButton>(sheet(), "defaultButton");
    EXPECT_TRUE(apply.isDefault());
    EXPECT_LT(reset.x(), cancel.x());
    EXPECT_LT(cancel.x(), apply.x());
    EXPECT_EQ(apply.text(), QStringLiteral("&Apply"));
    EXPECT_EQ(cancel.text(), QStringLiteral("&Cancel"));
    EXPECT_EQ(reset.text(), QStringLiteral("&Default"));
}

TEST_F(SettingLayout, TheTabKeyGoesThroughTheControlsFromTopToBottom) {
    const QWidget* at = &control("appendPageCheck");
    QStringList names;
    for (int step = 0; step < 16; ++step) {
        names << at->objectName();
        do {
            at = at->nextInFocusChain();
        } while ((at->focusPolicy() & Qt::TabFocus) == 0 || at->objectName().startsWith(QLatin1String("qt_")));
    }
    EXPECT_EQ(names.join(u' '),
              QStringLiteral("appendPageCheck appendBlankPageRadio appendFilePageRadio appendPagePathField "
                             "appendPageSelectButton addWatermarkCheck addWatermarkField addPageNumberCheck "
                             "addPageNumberBeginField addPageNumberOffsetField addPageNumberPrefixField "
                             "addPageNumberPositionBox addPageNumberFontBox addPageNumberSizeField colorWell "
                             "titleField"));
}

TEST_F(SettingLayout, ThePermissionMenusSayWhatTheirItemsMean) {
    for (const char* name : {"ownerPasswordPrintBox", "ownerPasswordCopyBox"}) {
        ASSERT_EQ(box(name).count(), 2);
        EXPECT_EQ(box(name).itemText(0), QStringLiteral("Not allowed"));
        EXPECT_EQ(box(name).itemText(1), QStringLiteral("Allowed"));
    }
}

}  // namespace
