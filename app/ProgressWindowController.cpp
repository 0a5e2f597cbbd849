#include "app/ProgressWindowController.h"

#include "merge/MergeOwner.h"
#include "platform/ui/Workspace.h"
#include "ui_ProgressIndicator.h"

#include <QAction>

namespace quillon {

ProgressWindowController::ProgressWindowController(const QString& windowNibName, MergeOwner& user,
                                                   QWidget& modalForWindow, Workspace& workspace)
    : WindowController(windowNibName),
      ui_(std::make_unique<Ui::ProgressIndicator>()),
      progressUser_(user),
      modalForWindow_(modalForWindow),
      workspace_(workspace) {}

ProgressWindowController::~ProgressWindowController() = default;

void ProgressWindowController::loadInterface(SheetDialog& window) {
    ui_->setupUi(&window);
    // The bar has no value, it is there while it moves; without it the sheet keeps its size.
    QSizePolicy policy = ui_->progressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    ui_->progressIndicator->setSizePolicy(policy);
    connect(ui_->stopOrCloseButton, &QPushButton::clicked, this, &ProgressWindowController::stopOrCloseOnClicked);
    connect(ui_->openButton, &QPushButton::clicked, this, &ProgressWindowController::openFileOnClicked);
    connect(&window, &SheetDialog::cancelRequested, this, &ProgressWindowController::cancel);
}

void ProgressWindowController::windowDidLoad() {
    ui_->openButton->hide();
    ui_->stopOrCloseButton->setText(QStringLiteral("Stop"));
    stopAnimation();
}

void ProgressWindowController::startHandling() {
    SheetDialog& sheet = window();
    sheet.setWindowTitle(QStringLiteral("Merging"));
    ui_->messageLabel->setText(QStringLiteral("Merging into %1 …").arg(targetURL().fileName()));
    ui_->openButton->hide();
    ui_->stopOrCloseButton->setText(QStringLiteral("Stop"));
    ui_->stopOrCloseButton->setDefault(false);
    sheet.setFocus();
    sheet.beginSheet(modalForWindow_, [this](SheetDialog& ended, int returnCode) { didEndSheet(ended, returnCode); });
    startAnimation();
}

void ProgressWindowController::finishHandling() {
    window().setWindowTitle(QStringLiteral("Merge Ended"));
    ui_->messageLabel->setText(QStringLiteral("The merge has ended."));
    ui_->stopOrCloseButton->setText(QStringLiteral("Close"));
    ui_->stopOrCloseButton->setDefault(true);
    ui_->stopOrCloseButton->setFocus();
    ui_->openButton->show();
    stopAnimation();
}

void ProgressWindowController::startAnimation() {
    ui_->progressIndicator->show();
}

void ProgressWindowController::stopAnimation() {
    ui_->progressIndicator->hide();
}

void ProgressWindowController::stopOrCloseOnClicked() {
    window().endSheet(0);
    progressUser_.stopHandling();
}

void ProgressWindowController::openFileOnClicked() {
    window().endSheet(0);
    if (const QUrl url = targetURL(); !url.isEmpty()) workspace_.openURL(url);
}

void ProgressWindowController::didEndSheet(SheetDialog& sheet, int /*returnCode*/) {
    sheet.orderOut();
}

void ProgressWindowController::cancel() {
    // A stray key must not cut a merge short; that takes the button.
    const bool isFinished = !ui_->openButton->isHidden();
    if (isFinished) stopOrCloseOnClicked();
}

QUrl ProgressWindowController::targetURL() const {
    const std::lock_guard lock(targetMutex_);
    return targetURL_;
}

void ProgressWindowController::setTargetURL(const QUrl& url) {
    const std::lock_guard lock(targetMutex_);
    targetURL_ = url;
}

}  // namespace quillon
