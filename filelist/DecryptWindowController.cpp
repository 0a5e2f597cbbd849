#include "filelist/DecryptWindowController.h"

#include "ui_DecryptWindow.h"

namespace quillon {

DecryptWindowController::DecryptWindowController(const QString& windowNibName) : WindowController(windowNibName) {}

DecryptWindowController::~DecryptWindowController() = default;

void DecryptWindowController::loadInterface(SheetDialog& window) {
    ui_ = std::make_unique<Ui::DecryptWindow>();
    ui_->setupUi(&window);
    connect(ui_->okButton, &QPushButton::clicked, this, &DecryptWindowController::okOnClicked);
    connect(ui_->cancelButton, &QPushButton::clicked, this, &DecryptWindowController::cancelOnClicked);
    connect(&window, &SheetDialog::cancelRequested, this, &DecryptWindowController::cancelOnClicked);
}

QString DecryptWindowController::getPassword() const {
    const QString text = ui_->passwordTextField->text();
    return text.isEmpty() ? QString() : text;
}

void DecryptWindowController::okOnClicked() {
    endSheet(1);
}

void DecryptWindowController::cancelOnClicked() {
    endSheet(0);
}

/// Leaves the text selected, so that typing replaces it when the sheet is opened again.
void DecryptWindowController::endSheet(int returnCode) {
    ui_->passwordTextField->setFocus();
    ui_->passwordTextField->selectAll();
    window().endSheet(returnCode);
}

}  // namespace quillon
