#include "merge/LeadingInteger.h"
#include "platform/ui/TextColor.h"
#include "settings/SettingWindowController.h"
#include "ui_SettingWindow.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>

#include <algorithm>

// The part of SettingWindowController that makes controls follow each other and notes what was touched.

namespace quillon {
namespace {

/// Text of any colour can be chosen, whatever the theme of the window. So that it can be read, the example stands on
/// paper of its own, which is dark for light text.
void setExampleColor(QLabel& example, const QColor& text) {
    constexpr int light = 150;
    setTextColor(example, text, false);
    QPalette palette = example.palette();
    palette.setColor(QPalette::Window, qGray(text.rgb()) < light ? QColor(Qt::white) : QColor(0x30, 0x30, 0x30));
    example.setPalette(palette);
    example.setAutoFillBackground(true);
}

/// The font of the example; that of all labels where the family is not installed or the size is none.
QFont exampleFont(const QString& family, int size) {
    constexpr int largest = 144;  // points; the label shows only a part of anything larger
    QFont font = QApplication::font("QLabel");
    if (QFontDatabase::hasFamily(family)) font.setFamily(family);
    if (size > 0) font.setPointSize(std::min(size, largest));
    return font;
}

}  // namespace

QColor SettingWindowController::getColor(bool enabled) {
    return enabled ? controlTextColor() : disabledControlTextColor();
}

Qt::CheckState SettingWindowController::getCheckState(bool on) {
    return on ? Qt::Checked : Qt::Unchecked;
}

void SettingWindowController::changeAppendPageState(bool on) {
    const Ui::SettingWindow& ui = *ui_;
    ui.appendPageOptionRadio->setEnabled(on);
    ui.appendPageCheck->setCheckState(getCheckState(on));
    if (on) {
        appendPageOptionOnClicked();
        const bool fromFile = ui.appendPageOptionRadio->selectedRow() == 1;
        ui.appendPagePathField->setEnabled(fromFile);
        setTextColor(*ui.appendPagePathLabel, getColor(fromFile));
    } else {
        ui.appendPagePathField->setEnabled(false);
        setTextColor(*ui.appendPagePathLabel, getColor(false));
        ui.appendPageSelectButton->setEnabled(false);
    }
}

void SettingWindowController::appendPageOptionOnClicked() {
    const Ui::SettingWindow& ui = *ui_;
    const bool fromFile = ui.appendPageOptionRadio->selectedRow() == 1;
    ui.appendPagePathField->setEnabled(fromFile);
    ui.appendPageSelectButton->setEnabled(fromFile);
    setTextColor(*ui.appendPagePathLabel, getColor(fromFile));
    changes_.isAppendPageChange = true;
}

void SettingWindowController::changeAddWatermarkState(bool on) {
    ui_->addWatermarkCheck->setCheckState(getCheckState(on));
    ui_->addWatermarkField->setEnabled(on);
    setTextColor(*ui_->addWatermarkContentLabel, getColor(on));
}

void SettingWindowController::changeAddBookmarkState(bool on) {
    const Ui::SettingWindow& ui = *ui_;
    ui.addBookmarkCheck->setCheckState(getCheckState(on));
    ui.addBookmarkOptionRadio->setEnabled(on);
    ui.addBookmarkUseFilenameCheck->setEnabled(on);
    if (on) {
        addBookmarkUseFilenameCheckOnClicked();
    } else {
        ui.addBookmarkRemoveCheck->setEnabled(false);
    }
}

void SettingWindowController::changeAddBookmarkUseFilenameState(bool on) {
    ui_->addBookmarkUseFilenameCheck->setCheckState(getCheckState(on));
    ui_->addBookmarkRemoveCheck->setEnabled(on);
}

void SettingWindowController::changeAddPageNumberState(bool on) {
    const Ui::SettingWindow& ui = *ui_;
    ui.addPageNumberCheck->setCheckState(getCheckState(on));
    for (QWidget* control : std::initializer_list<QWidget*>{
             ui.addPageNumberBeginField, ui.colorWell, ui.addPageNumberFontBox, ui.addPageNumberPrefixField,
             ui.addPageNumberSizeField, ui.addPageNumberOffsetField, ui.addPageNumberPositionBox}) {
        control->setEnabled(on);
    }
    for (QWidget* caption : std::initializer_list<QWidget*>{
             ui.addPageNumberPreviewLabel, ui.addPageNumberBeginLabel, ui.addPageNumberColorLabel,
             ui.addPageNumberColorContentLabel, ui.addPageNumberFontLabel, ui.addPageNumberOffsetLabel,
             ui.addPageNumberPrefixField, ui.addPageNumberPositionLabel, ui.addPageNumberSizeLabel,
             ui.addPageNumberPrefix}) {
        setTextColor(*caption, getColor(on));
    }
    // Not in the chosen colour, until the colour, font or size is touched.
    setTextColor(*ui.addPageNumberExampleLabel, getColor(on));
    ui.addPageNumberExampleLabel->setAutoFillBackground(false);
}

void SettingWindowController::changeUserPasswordState(bool on) {
    ui_->userPasswordCheck->setCheckState(getCheckState(on));
    ui_->userPasswordField->setEnabled(on);
    setTextColor(*ui_->userPasswordLabel, getColor(on));
}

void SettingWindowController::changeOwnerPasswordState(bool on) {
    const Ui::SettingWindow& ui = *ui_;
    ui.ownerPasswordCheck->setCheckState(getCheckState(on));
    ui.ownerPasswordCopyBox->setEnabled(on);
    ui.ownerPasswordField->setEnabled(on);
    ui.ownerPasswordPrintBox->setEnabled(on);
    for (QLabel* caption : {ui.ownerPasswordLabel, ui.ownerPasswordPrintLabel, ui.ownerPasswordCopyLabel}) {
        setTextColor(*caption, getColor(on));
    }
}

void SettingWindowController::updateExampleLabel() {
    setExampleColor(*ui_->addPageNumberExampleLabel, cacheColor_);
    ui_->addPageNumberExampleLabel->setFont(
        exampleFont(cacheFontName_, leadingInteger(ui_->addPageNumberSizeField->text())));
}

void SettingWindowController::appendPageCheckOnClicked() {
    changes_.isAppendPageChange = true;
    changeAppendPageState(isAddPage());
}

void SettingWindowController::appendPageSelectOnClicked() {
    OpenPanel panel;
    panel.allowedFileTypes = {QStringLiteral("pdf")};
    const QList<QUrl> urls = panels_.runOpenPanel(panel, &window());
    if (urls.isEmpty()) return;
    cachePathURL_ = urls.constFirst();
    ui_->appendPagePathField->setText(cachePathURL_.toLocalFile());
    changes_.isAppendPageChange = true;
}

void SettingWindowController::addWatermarkCheckOnClicked() {
    changes_.isAddWatermarkChange = true;
    changeAddWatermarkState(isAddWaterMark());
}

void SettingWindowController::addBookmarkCheckOnClicked() {
    changes_.isAddBookmarkChange = true;
    changeAddBookmarkState(ui_->addBookmarkCheck->isChecked());
}

void SettingWindowController::addBookmarkOptionRadioOnClicked() {
    changes_.isAddBookmarkChange = true;
}

void SettingWindowController::addBookmarkUseFilenameCheckOnClicked() {
    changes_.isAddBookmarkChange = true;
    changeAddBookmarkUseFilenameState(isUseFileName());
}

void SettingWindowController::addBookmarkRemoveOnClicked() {
    changes_.isAddBookmarkChange = true;
}

void SettingWindowController::addPageNumberCheckOnClicked() {
    changes_.isAddPageNumberChange = true;
    changeAddPageNumberState(isAddPageNumber());
}

void SettingWindowController::addPageNumberPositionOnClicked() {
    changes_.isAddPageNumberChange = true;
}

void SettingWindowController::addPageNumberFontOnClicked() {
    changes_.isAddPageNumberChange = true;
    cacheFontName_ = ui_->addPageNumberFontBox->currentText();
    updateExampleLabel();
}

void SettingWindowController::colorWellOnClicked() {
    changes_.isAddPageNumberChange = true;
    cacheColor_ = ui_->colorWell->color();
    updateExampleLabel();
}

void SettingWindowController::usePasswordCheckOnClicked() {
    changes_.isUserEncryptChange = true;
    changeUserPasswordState(isUserEncrypt());
}

void SettingWindowController::ownerPasswordOnClicked() {
    changes_.isOwnerEncryptChange = true;
    changeOwnerPasswordState(isOwnerEncrypt());
}

void SettingWindowController::ownerPasswordPrintOnClicked() {
    changes_.isOwnerEncryptChange = true;
}

void SettingWindowController::ownerPasswordCopyOnClicked() {
    changes_.isOwnerEncryptChange = true;
}

void SettingWindowController::controlTextDidChange(const QLineEdit& field) {
    const Ui::SettingWindow& ui = *ui_;
    if (&field == ui.appendPagePathField) {
        changes_.isAppendPageChange = true;
    } else if (&field == ui.addWatermarkField) {
        changes_.isAddWatermarkChange = true;
    } else if (&field == ui.imageDPIField) {
        changes_.isDPIChange = true;
    } else if (&field == ui.titleField) {
        changes_.isTitleChange = true;
    } else if (&field == ui.subjectField) {
        changes_.isSubjectChange = true;
    } else if (&field == ui.authorField) {
        changes_.isAuthorChange = true;
    } else if (&field == ui.keywordsField) {
        changes_.isKeywordsChange = true;
    } else if (&field == ui.addPageNumberBeginField || &field == ui.addPageNumberPrefixField) {
        changes_.isAddPageNumberChange = true;
    } else if (&field == ui.addPageNumberOffsetField) {
        if (leadingInteger(field.text()) == 0) {
            ui.addPageNumberOffsetField->clear();
        } else {
            changes_.isAddPageNumberChange = true;
        }
    } else if (&field == ui.addPageNumberSizeField) {
        changes_.isAddPageNumberChange = true;
        updateExampleLabel();
    }
}

}  // namespace quillon
