#include "merge/LeadingInteger.h"
#include "platform/jobs/MainThread.h"
#include "platform/pdf/Color.h"
#include "platform/text/Font.h"
#include "settings/SettingWindowController.h"
#include "ui_SettingWindow.h"

// The part of SettingWindowController that a merge asks for its options.

namespace quillon {
namespace {

Color colorOf(const QColor& color) {
    return Color::sRGB(color.redF(), color.greenF(), color.blueF(), color.alphaF());
}

}  // namespace

bool SettingWindowController::isAddPage() const {
    return ui_->appendPageCheck->isChecked();
}

bool SettingWindowController::isAddBlankPage() const {
    return ui_->appendPageOptionRadio->selectedRow() == 0;
}

QUrl SettingWindowController::addedPageUrl() const {
    return cachePathURL_;
}

void SettingWindowController::refreshWatermarkState() {
    addWatermarkState_ = ui_->addBookmarkCheck->isChecked() ? 1 : 0;
}

bool SettingWindowController::isAddBookmark() {
    MainThread::performOnMainThread([this] { refreshWatermarkState(); }, true);
    return addWatermarkState_ == 1;
}

bool SettingWindowController::isKeepOriginalBookmark() const {
    return ui_->addBookmarkOptionRadio->selectedRow() == 0;
}

bool SettingWindowController::isUseFileName() const {
    return ui_->addBookmarkUseFilenameCheck->isChecked();
}

bool SettingWindowController::isRemoveExtension() const {
    return ui_->addBookmarkRemoveCheck->isChecked();
}

bool SettingWindowController::isAddWaterMark() const {
    return ui_->addWatermarkCheck->isChecked();
}

QString SettingWindowController::getWaterMarkContent() const {
    return ui_->addWatermarkField->text();
}

bool SettingWindowController::isAddPageNumber() const {
    return ui_->addPageNumberCheck->isChecked();
}

std::int32_t SettingWindowController::pageNumberPosition() const {
    const QString position = ui_->addPageNumberPositionBox->currentText();
    if (position == QLatin1String("Left Buttom")) return 0;
    if (position == QLatin1String("Middle Buttom")) return 1;
    return 2;
}

QString SettingWindowController::getNextPageNumberPrefixString() const {
    return ui_->addPageNumberPrefixField->text();
}

TextAttributes SettingWindowController::getStringAttr() const {
    const double size = ui_->addPageNumberSizeField->text().toFloat();
    const QVariant font = Font::objectWithName(ui_->addPageNumberFontBox->currentText(), size);
    const QVariant color = QVariant::fromValue(colorOf(ui_->colorWell->color()));
    return attributesWithObjectsAndKeys({{font, NSFontAttributeName},
                                         {color, NSStrikethroughColorAttributeName},
                                         {color, NSForegroundColorAttributeName}});
}

std::int32_t SettingWindowController::getPageNumberBegin() const {
    return leadingInteger(ui_->addPageNumberBeginField->text());
}

std::int32_t SettingWindowController::getPageNumberOffset() const {
    return leadingInteger(ui_->addPageNumberOffsetField->text());
}

bool SettingWindowController::isUserEncrypt() const {
    return ui_->userPasswordCheck->isChecked();
}

QString SettingWindowController::userEncryptPassword() const {
    return ui_->userPasswordField->text();
}

bool SettingWindowController::isOwnerEncrypt() const {
    return ui_->ownerPasswordCheck->isChecked();
}

QString SettingWindowController::ownerEncryptPassword() const {
    return ui_->ownerPasswordField->text();
}

bool SettingWindowController::isCopyAllowed() const {
    return ui_->ownerPasswordCopyBox->currentIndex() == 1;
}

bool SettingWindowController::isPrintAllowed() const {
    return ui_->ownerPasswordPrintBox->currentIndex() == 1;
}

void SettingWindowController::registerTitle(const QString& title) {
    nameResolver_.registerTitle(title);
}

void SettingWindowController::registerAuthor(const QString& author) {
    nameResolver_.registerAuthor(author);
}

void SettingWindowController::registerSubject(const QString& subject) {
    nameResolver_.registerSubject(subject);
}

void SettingWindowController::registerKeywords(const std::optional<QStringList>& keywords) {
    nameResolver_.registerKeywords(keywords);
}

void SettingWindowController::registerCreator(const QString& creator) {
    nameResolver_.registerCreator(creator);
}

QString SettingWindowController::resolveTitle() {
    return nameResolver_.resolveTitle(ui_->titleField->text());
}

QString SettingWindowController::resolveAuthor() {
    return nameResolver_.resolveAuthor(ui_->authorField->text());
}

QString SettingWindowController::resolveSubject() {
    return nameResolver_.resolveSubject(ui_->subjectField->text());
}

QString SettingWindowController::resolveKeywords() {
    return nameResolver_.resolveKeywords(ui_->keywordsField->text());
}

QString SettingWindowController::resolveCreator() {
    return nameResolver_.resolveCreator(QString());
}

}  // namespace quillon
