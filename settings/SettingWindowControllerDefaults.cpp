#include "merge/LeadingInteger.h"
#include "settings/SettingWindowController.h"
#include "ui_SettingWindow.h"

#include <algorithm>
#include <utility>

// The part of SettingWindowController that moves settings between the controls and the store.

namespace quillon {
namespace {

/// An item that is not in the box leaves none selected.
void selectItem(QComboBox& box, const QString& text) {
    box.setCurrentIndex(box.findText(text));
}

void selectIndex(QComboBox& box, int index) {
    box.setCurrentIndex(std::clamp(index, 0, box.count() - 1));
}

QString factoryText(Setting setting) {
    return settingKey(setting).factory.toString();
}

bool factoryState(Setting setting) {
    return settingKey(setting).factory.toBool();
}

int state(const QCheckBox& check) {
    return check.isChecked() ? 1 : 0;
}

}  // namespace

void SettingWindowController::restoreUserDefaults() {
    restoreAppendPage();
    restoreWatermark();
    const std::int32_t resolution = store_.integer(Setting::imageDPI);
    if (resolution != 0) ui_->imageDPIField->setText(QString::number(resolution));
    restoreInformation();
    restoreBookmark();
    restorePageNumber();
    restorePasswords();
    changes_ = {};
}

void SettingWindowController::restoreAppendPage() {
    const bool on = store_.isOn(Setting::appendPage);
    if (on) {
        ui_->appendPageOptionRadio->selectRow(store_.integer(Setting::appendPageOption));
        const QUrl location = store_.location(Setting::appendPageFilePath);
        ui_->appendPagePathField->setText(location.toLocalFile());
        if (!location.isEmpty()) cachePathURL_ = location;
    }
    changeAppendPageState(on);
}

void SettingWindowController::restoreWatermark() {
    const bool on = store_.isOn(Setting::addWatermark);
    changeAddWatermarkState(on);
    if (on) ui_->addWatermarkField->setText(store_.text(Setting::addWatermarkContent));
}

void SettingWindowController::restoreInformation() {
    ui_->titleField->setText(store_.text(Setting::title));
    ui_->authorField->setText(store_.text(Setting::author));
    ui_->subjectField->setText(store_.text(Setting::subject));
    ui_->keywordsField->setText(store_.text(Setting::keywords));
}

void SettingWindowController::restoreBookmark() {
    const bool on = store_.isOn(Setting::addBookmark);
    changeAddBookmarkState(on);
    if (!on) return;
    ui_->addBookmarkOptionRadio->selectRow(store_.integer(Setting::addBookmarkOption));
    const bool useFilename = store_.isOn(Setting::addBookmarkUseFilename);
    changeAddBookmarkUseFilenameState(useFilename);
    if (!useFilename) return;
    ui_->addBookmarkRemoveCheck->setCheckState(getCheckState(store_.isOn(Setting::addBookmarkRemoveExtension)));
}

void SettingWindowController::restorePageNumber() {
    const Ui::SettingWindow& ui = *ui_;
    const bool on = store_.isOn(Setting::addPageNumber);
    changeAddPageNumberState(on);
    if (!on) return;
    // A stored 0 would look like a missing number, so it is stored as -1; no other negative number is ever stored.
    const std::int32_t begin = store_.integer(Setting::addPageNumberBegin);
    if (begin >= -1) ui.addPageNumberBeginField->setText(QString::number(std::max(begin, 0)));
    const std::int32_t offset = store_.integer(Setting::addPageNumberOffset);
    ui.addPageNumberOffsetField->setText(QString::number(offset == 0 ? 1 : offset));
    ui.addPageNumberPrefixField->setText(store_.text(Setting::addPageNumberPrefix));
    ui.addPageNumberSizeField->setText(QString::number(store_.integer(Setting::addPageNumberSize)));
    selectItem(*ui.addPageNumberPositionBox, store_.text(Setting::addPageNumberPosition));
    restorePageNumberFont();
    updateExampleLabel();
}

void SettingWindowController::restorePageNumberFont() {
    const Ui::SettingWindow& ui = *ui_;
    const QString font = store_.text(Setting::addPageNumberFont);
    if (font.isNull()) {
        cacheFontName_ = ui.addPageNumberFontBox->currentText();
    } else {
        selectItem(*ui.addPageNumberFontBox, font);
        cacheFontName_ = font;
    }
    const QColor color = store_.color(Setting::addPageNumberColor);
    if (color.isValid()) {
        cacheColor_ = color;
        ui.colorWell->setColor(color);
    } else {
        cacheColor_ = settingKey(Setting::addPageNumberColor).missing.value<QColor>();
    }
}

void SettingWindowController::restorePasswords() {
    const bool user = store_.isOn(Setting::userPasswordState);
    changeUserPasswordState(user);
    if (user) ui_->userPasswordField->setText(store_.text(Setting::userPassword));
    const bool owner = store_.isOn(Setting::ownerPasswordState);
    changeOwnerPasswordState(owner);
    if (!owner) return;
    ui_->ownerPasswordField->setText(store_.text(Setting::ownerPassword));
    selectIndex(*ui_->ownerPasswordCopyBox, store_.integer(Setting::allowCopy));
    selectIndex(*ui_->ownerPasswordPrintBox, store_.integer(Setting::allowPrint));
}

void SettingWindowController::saveUserDefault() {
    saveAppendPage();
    saveWatermark();
    saveInformation();
    saveBookmark();
    savePageNumber();
    savePasswords();
    changes_.isDPIChange = false;
    store_.synchronize();
}

void SettingWindowController::saveAppendPage() {
    if (!std::exchange(changes_.isAppendPageChange, false)) return;
    store_.setInteger(Setting::appendPage, state(*ui_->appendPageCheck));
    if (!ui_->appendPageCheck->isChecked()) return;
    const int row = ui_->appendPageOptionRadio->selectedRow();
    store_.setInteger(Setting::appendPageOption, row);
    if (row == 1) store_.setText(Setting::appendPageFilePath, ui_->appendPagePathField->text());
}

void SettingWindowController::saveWatermark() {
    if (!std::exchange(changes_.isAddWatermarkChange, false)) return;
    store_.setInteger(Setting::addWatermark, state(*ui_->addWatermarkCheck));
    if (!ui_->addWatermarkCheck->isChecked()) return;
    store_.setText(Setting::addWatermarkContent, ui_->addWatermarkField->text());
}

void SettingWindowController::saveInformation() {
    const auto save = [this](bool& changed, Setting setting, const QLineEdit& field) {
        if (std::exchange(changed, false)) store_.setText(setting, field.text());
    };
    save(changes_.isAuthorChange, Setting::author, *ui_->authorField);
    save(changes_.isTitleChange, Setting::title, *ui_->titleField);
    save(changes_.isSubjectChange, Setting::subject, *ui_->subjectField);
    save(changes_.isKeywordsChange, Setting::keywords, *ui_->keywordsField);
}

void SettingWindowController::saveBookmark() {
    if (!std::exchange(changes_.isAddBookmarkChange, false)) return;
    const Ui::SettingWindow& ui = *ui_;
    store_.setInteger(Setting::addBookmark, state(*ui.addBookmarkCheck));
    if (!ui.addBookmarkCheck->isChecked()) return;
    store_.setInteger(Setting::addBookmarkOption, ui.addBookmarkOptionRadio->selectedRow());
    store_.setInteger(Setting::addBookmarkUseFilename, state(*ui.addBookmarkUseFilenameCheck));
    if (!ui.addBookmarkUseFilenameCheck->isChecked()) return;
    store_.setInteger(Setting::addBookmarkRemoveExtension, state(*ui.addBookmarkRemoveCheck));
}

void SettingWindowController::savePageNumber() {
    if (!std::exchange(changes_.isAddPageNumberChange, false)) return;
    const Ui::SettingWindow& ui = *ui_;
    store_.setInteger(Setting::addPageNumber, state(*ui.addPageNumberCheck));
    if (!ui.addPageNumberCheck->isChecked()) return;
    const QString begin = ui.addPageNumberBeginField->text();
    const std::int32_t number = leadingInteger(begin);
    store_.setInteger(Setting::addPageNumberBegin, !begin.isEmpty() && number == 0 ? -1 : number);
    store_.setInteger(Setting::addPageNumberOffset, leadingInteger(ui.addPageNumberOffsetField->text()));
    store_.setInteger(Setting::addPageNumberSize, leadingInteger(ui.addPageNumberSizeField->text()));
    store_.setText(Setting::addPageNumberPosition, ui.addPageNumberPositionBox->currentText());
    store_.setText(Setting::addPageNumberPrefix, ui.addPageNumberPrefixField->text());
    store_.setText(Setting::addPageNumberFont, cacheFontName_);
    store_.setColor(Setting::addPageNumberColor, cacheColor_);
}

void SettingWindowController::savePasswords() {
    const Ui::SettingWindow& ui = *ui_;
    if (std::exchange(changes_.isUserEncryptChange, false)) {
        store_.setInteger(Setting::userPasswordState, state(*ui.userPasswordCheck));
        if (ui.userPasswordCheck->isChecked()) store_.setText(Setting::userPassword, ui.userPasswordField->text());
    }
    if (!std::exchange(changes_.isOwnerEncryptChange, false)) return;
    store_.setInteger(Setting::ownerPasswordState, state(*ui.ownerPasswordCheck));
    if (!ui.ownerPasswordCheck->isChecked()) return;
    store_.setText(Setting::ownerPassword, ui.ownerPasswordField->text());
    store_.setInteger(Setting::allowPrint, ui.ownerPasswordPrintBox->currentIndex());
    store_.setInteger(Setting::allowCopy, ui.ownerPasswordCopyBox->currentIndex());
}

void SettingWindowController::defaultSetting() {
    const Ui::SettingWindow& ui = *ui_;
    changeAppendPageState(factoryState(Setting::appendPage));
    changeAddBookmarkState(factoryState(Setting::addBookmark));
    changeAddPageNumberState(factoryState(Setting::addPageNumber));
    changeAddWatermarkState(factoryState(Setting::addWatermark));
    changeOwnerPasswordState(factoryState(Setting::ownerPasswordState));
    changeUserPasswordState(factoryState(Setting::userPasswordState));
    selectItem(*ui.addPageNumberPositionBox, factoryText(Setting::addPageNumberPosition));
    ui.titleField->setText(factoryText(Setting::title));
    ui.subjectField->setText(factoryText(Setting::subject));
    ui.authorField->setText(factoryText(Setting::author));
    ui.keywordsField->setText(factoryText(Setting::keywords));
    ui.imageDPIField->setText(factoryText(Setting::imageDPI));
    ui.appendPageSelectButton->setEnabled(false);
    ui.addBookmarkRemoveCheck->setEnabled(false);
    ui.addPageNumberFontBox->setCurrentIndex(0);
    cacheColor_ = settingKey(Setting::addPageNumberColor).factory.value<QColor>();
    ui.colorWell->setColor(cacheColor_);
    // The position box, not the font box: the reset leaves no font chosen.
    cacheFontName_ = ui.addPageNumberPositionBox->currentText();
    selectIndex(*ui.ownerPasswordCopyBox, settingKey(Setting::allowCopy).factory.toInt());
    selectIndex(*ui.ownerPasswordPrintBox, settingKey(Setting::allowPrint).factory.toInt());
}

void SettingWindowController::returnToDefault() {
    defaultSetting();
    changes_ = {true, true, true, true, true, true, true, true, true, true, true};
}

}  // namespace quillon
