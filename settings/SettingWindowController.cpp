#include "settings/SettingWindowController.h"

#include "filelist/NumberOnlyFormatter.h"
#include "platform/ui/Alert.h"
#include "ui_SettingWindow.h"

#include <QAction>
#include <QFontDatabase>
#include <QMenu>

#include <utility>

// Loading, checking and closing the sheet. Its controls' states and actions are in SettingWindowControllerActions.cpp,
// the store's side in SettingWindowControllerDefaults.cpp, what a merge asks for in SettingWindowControllerGetters.cpp.

namespace quillon {
namespace {

const QString& macroFace() {
    static const QString face = QStringLiteral("Macro...");
    return face;
}

}  // namespace

SettingWindowController::SettingWindowController(const QString& windowNibName, Panels& panels, UserDefaults& defaults)
    : WindowController(windowNibName), panels_(panels), store_(defaults) {}

SettingWindowController::~SettingWindowController() = default;

void SettingWindowController::loadInterface(SheetDialog& window) {
    ui_ = std::make_unique<Ui::SettingWindow>();
    ui_->setupUi(&window);
    ui_->appendPageOptionRadio->addRow(*ui_->appendBlankPageRadio);
    ui_->appendPageOptionRadio->addRow(*ui_->appendFilePageRadio);
    ui_->addBookmarkOptionRadio->addRow(*ui_->keepBookmarkRadio);
    ui_->addBookmarkOptionRadio->addRow(*ui_->dropBookmarkRadio);
    connectPageControls();
    connectDocumentControls();
    connectPasswordControls();
    connectButtons();
    connect(&window, &SheetDialog::cancelRequested, this, &SettingWindowController::cancelOnClicked);
}

void SettingWindowController::connectPageControls() {
    using Self = SettingWindowController;
    const Ui::SettingWindow& ui = *ui_;
    connect(ui.appendPageCheck, &QCheckBox::clicked, this, &Self::appendPageCheckOnClicked);
    connect(ui.appendPageOptionRadio, &RadioMatrix::clicked, this, &Self::appendPageOptionOnClicked);
    connect(ui.appendPageSelectButton, &QPushButton::clicked, this, &Self::appendPageSelectOnClicked);
    connect(ui.addWatermarkCheck, &QCheckBox::clicked, this, &Self::addWatermarkCheckOnClicked);
    connect(ui.addPageNumberCheck, &QCheckBox::clicked, this, &Self::addPageNumberCheckOnClicked);
    connect(ui.addPageNumberPositionBox, &QComboBox::activated, this, &Self::addPageNumberPositionOnClicked);
    connect(ui.addPageNumberFontBox, &QComboBox::activated, this, &Self::addPageNumberFontOnClicked);
    connect(ui.colorWell, &ColorWell::colorChosen, this, &Self::colorWellOnClicked);
}

void SettingWindowController::connectDocumentControls() {
    using Self = SettingWindowController;
    const Ui::SettingWindow& ui = *ui_;
    connect(ui.titleMacroButton, &PopUpButton::itemChosen, this, &Self::titleMacroOnClicked);
    connect(ui.authorMacroButton, &PopUpButton::itemChosen, this, &Self::authorMacroOnClicked);
    connect(ui.subjectMacroButton, &PopUpButton::itemChosen, this, &Self::subjectMacroOnClicked);
    connect(ui.keywordsMacroButton, &PopUpButton::itemChosen, this, &Self::keywordsMacroOnClicked);
    for (QLineEdit* field : {ui.titleField, ui.authorField, ui.subjectField, ui.keywordsField, ui.imageDPIField}) {
        setDelegate(*field);
    }
    connect(ui.addBookmarkCheck, &QCheckBox::clicked, this, &Self::addBookmarkCheckOnClicked);
    connect(ui.addBookmarkOptionRadio, &RadioMatrix::clicked, this, &Self::addBookmarkOptionRadioOnClicked);
    connect(ui.addBookmarkUseFilenameCheck, &QCheckBox::clicked, this, &Self::addBookmarkUseFilenameCheckOnClicked);
    connect(ui.addBookmarkRemoveCheck, &QCheckBox::clicked, this, &Self::addBookmarkRemoveOnClicked);
}

void SettingWindowController::connectPasswordControls() {
    using Self = SettingWindowController;
    const Ui::SettingWindow& ui = *ui_;
    connect(ui.userPasswordCheck, &QCheckBox::clicked, this, &Self::usePasswordCheckOnClicked);
    connect(ui.ownerPasswordCheck, &QCheckBox::clicked, this, &Self::ownerPasswordOnClicked);
    connect(ui.ownerPasswordPrintBox, &QComboBox::activated, this, &Self::ownerPasswordPrintOnClicked);
    connect(ui.ownerPasswordCopyBox, &QComboBox::activated, this, &Self::ownerPasswordCopyOnClicked);
}

void SettingWindowController::connectButtons() {
    connect(ui_->applyButton, &QPushButton::clicked, this, &SettingWindowController::applyOnClicked);
    connect(ui_->cancelButton, &QPushButton::clicked, this, &SettingWindowController::cancelOnClicked);
    connect(ui_->defaultButton, &QPushButton::clicked, this, &SettingWindowController::defaultOnClicked);
}

void SettingWindowController::windowDidLoad() {
    WindowController::windowDidLoad();
    setUpFontMenu();
    for (PopUpButton* button :
         {ui_->titleMacroButton, ui_->subjectMacroButton, ui_->authorMacroButton, ui_->keywordsMacroButton}) {
        button->setPopUpMenu(getMenu());
    }
    ui_->addPageNumberPositionBox->addItems(
        {QStringLiteral("Left Buttom"), QStringLiteral("Middle Buttom"), QStringLiteral("Right Buttom")});
    setUpFormatter();
    for (QLineEdit* field : {ui_->appendPagePathField, ui_->addWatermarkField, ui_->addPageNumberBeginField,
                             ui_->addPageNumberOffsetField, ui_->addPageNumberPrefixField, ui_->userPasswordField,
                             ui_->ownerPasswordField, ui_->addPageNumberSizeField}) {
        setDelegate(*field);
    }
    defaultSetting();
    restoreUserDefaults();
}

void SettingWindowController::setUpFontMenu() {
    ui_->addPageNumberFontBox->addItems(QFontDatabase::families());
}

void SettingWindowController::setUpFormatter() {
    auto* formatter = new NumberOnlyFormatter(&window());
    for (QLineEdit* field : {ui_->imageDPIField, ui_->addPageNumberBeginField, ui_->addPageNumberOffsetField,
                             ui_->addPageNumberSizeField}) {
        field->setValidator(formatter);
    }
}

void SettingWindowController::setDelegate(QLineEdit& field) {
    connect(&field, &QLineEdit::textEdited, this, [this, &field] { controlTextDidChange(field); });
}

std::unique_ptr<QAction> SettingWindowController::getMenuItem(const QString& title, bool hidden) {
    auto item = std::make_unique<QAction>(title);
    item->setVisible(!hidden);
    return item;
}

std::unique_ptr<QMenu> SettingWindowController::getMenu() {
    auto menu = std::make_unique<QMenu>();
    const auto add = [&](const QString& title, bool hidden) {
        QAction* item = getMenuItem(title, hidden).release();
        item->setParent(menu.get());
        menu->addAction(item);
    };
    add(macroFace(), true);
    for (const char* macro : {"%Original_Author%", "%Original_Title%", "%Original_Subject%", "%Original_Keywords%"}) {
        add(QString::fromLatin1(macro), false);
    }
    return menu;
}

bool SettingWindowController::validateInput() {
    const Ui::SettingWindow& ui = *ui_;
    if (isAddPage() && ui.appendPageOptionRadio->selectedRow() == 1 && ui.appendPagePathField->text().isEmpty()) {
        return refuse(*ui.appendPagePathField,
                      QStringLiteral("Error ! The path of the PDF file ,which is used when append is neccessary,"
                                     "MUST NOT BE EMPTY!"));
    }
    if (isAddWaterMark() && getWaterMarkContent().isEmpty()) {
        return refuse(*ui.addWatermarkField, QStringLiteral("Error ! The contents of watermark MUST NOT BE EMPTY !"));
    }
    const QString noPassword = QStringLiteral("Error ! The password field MUST NOT BE EMPTY !");
    if (isUserEncrypt() && userEncryptPassword().isEmpty()) return refuse(*ui.userPasswordField, noPassword);
    if (isOwnerEncrypt() && ownerEncryptPassword().isEmpty()) return refuse(*ui.ownerPasswordField, noPassword);
    if (isUserEncrypt() && isOwnerEncrypt() && userEncryptPassword() == ownerEncryptPassword()) {
        return refuse(*ui.ownerPasswordField,
                      QStringLiteral("Error ! User pasword MUST NOT EQUAL to owner password !"));
    }
    if (isAddPageNumber() && ui.addPageNumberBeginField->text().isEmpty()) {
        return refuse(*ui.addPageNumberBeginField, QStringLiteral("Error ! The begin page number MUST NOT BE EMPTY !"));
    }
    if (isAddPageNumber() && ui.addPageNumberOffsetField->text().isEmpty()) {
        return refuse(*ui.addPageNumberOffsetField,
                      QStringLiteral("Error ! The page number offset MUST NOT BE EMPTY !"));
    }
    return true;
}

/// Says what is wrong with the field, which is shown even if it stands on a tab behind.
bool SettingWindowController::refuse(QLineEdit& field, const QString& message) {
    for (QWidget* tab : {ui_->pagesTab, ui_->documentTab, ui_->protectionTab}) {
        if (tab->isAncestorOf(&field)) ui_->tabs->setCurrentWidget(tab);
    }
    field.setFocus();
    return showAlert(message);
}

bool SettingWindowController::showAlert(const QString& message) {
    Alert::beginSheet(message, QStringLiteral("Close"), QStringLiteral(""), window(),
                      [this](QWidget& alert) { alertDidEnd(alert); });
    return false;
}

void SettingWindowController::alertDidEnd(QWidget& alert) {
    alert.hide();
}

void SettingWindowController::applyOnClicked() {
    if (!validateInput()) return;
    saveUserDefault();
    window().setResult(1);
    doClose();
}

void SettingWindowController::cancelOnClicked() {
    restoreUserDefaults();
    window().setResult(0);
    doClose();
}

void SettingWindowController::defaultOnClicked() {
    returnToDefault();
}

void SettingWindowController::doClose() {
    window().endSheet(window().result());
    window().orderOut();
}

void SettingWindowController::DidEndSheet(SheetDialog& sheet, int /*returnCode*/) {
    sheet.orderOut();
}

namespace {

/// Appends the chosen macro and gives the button its face again.
void appendMacro(QLineEdit& field, PopUpButton& button) {
    field.setText(field.text() + button.titleOfSelectedItem());
    button.selectItemWithTitle(macroFace());
}

}  // namespace

void SettingWindowController::titleMacroOnClicked() {
    appendMacro(*ui_->titleField, *ui_->titleMacroButton);
    changes_.isTitleChange = true;
}

void SettingWindowController::authorMacroOnClicked() {
    appendMacro(*ui_->authorField, *ui_->authorMacroButton);
    changes_.isAuthorChange = true;
}

void SettingWindowController::subjectMacroOnClicked() {
    appendMacro(*ui_->subjectField, *ui_->subjectMacroButton);
    changes_.isSubjectChange = true;
}

void SettingWindowController::keywordsMacroOnClicked() {
    appendMacro(*ui_->keywordsField, *ui_->keywordsMacroButton);
    changes_.isKeywordsChange = true;
}

}  // namespace quillon
