#include "app/MainWindowController.h"
#include "merge/MergeOperation.h"
#include "platform/ToolkitVersion.h"
#include "platform/jobs/MainThread.h"
#include "platform/ui/Panels.h"
#include "platform/ui/TableView.h"
#include "ui_MainWindow.h"

#include <QDebug>
#include <QStatusBar>
#include <QTimer>

#include <utility>

// The part of MainWindowController that runs a merge, from the command to the finished file.

namespace quillon {

bool MainWindowController::validateInput() {
    if (!tableViewDataSource_->isAllDecrypt()) {
        return showAlert(QStringLiteral("Error ! There are file(s) not DECRYPTED !"));
    }
    if (!tableViewDataSource_->isOrderMakeSense()) {
        return showAlert(
            QStringLiteral("Warning ! There are REPEAT mode PDF file(s) not following immediately the MIX mode or MIX "
                           "REVERSE mode PDF file."));
    }
    return true;
}

void MainWindowController::mergeOnClicked() {
    if (!validateInput()) return;
    const SavePanel panel{QStringLiteral("pdf")};
    if (toolkitVersion < 1038.0) {
        panels_.beginSavePanel(panel, *window_,
                               [this](int returnCode, const QUrl& url) { savePanelDidEnd(url, returnCode); });
        return;
    }
    panels_.beginSavePanel(panel, *window_, [this](int result, const QUrl& url) {
        if (result != Panels::okButton) return;
        setCommandsEnabled(false);
        // Lets the panel leave the window before the progress sheet comes.
        constexpr int pauseMilliseconds = 100;
        QTimer::singleShot(pauseMilliseconds, this,
                           [this, url] { MainThread::performOnMainThread([this, url] { startMerger(url); }, false); });
    });
}

void MainWindowController::startMerger(const QUrl& url) {
    progressIndicator_->setTargetURL(url);
    setMergeOper(std::make_shared<MergeOperation>(tableViewDataSource_->cache(), url, *settingWindow_, *this));
    workQueue_.addOperation(MergeOper());
    qInfo().noquote() << "";
}

void MainWindowController::savePanelDidEnd(const QUrl& url, int returnCode) {
    if (returnCode != Panels::okButton) return;
    auto operation = std::make_shared<MergeOperation>(tableViewDataSource_->cache(), url, *settingWindow_, *this);
    progressIndicator_->setTargetURL(url);
    workQueue_.addOperation(std::move(operation));
    qInfo().noquote() << "";
}

void MainWindowController::startHandling() {
    isMergeRunning_ = true;
    setCommandsEnabled(false);
    progressIndicator_->startHandling();
}

void MainWindowController::stopHandling() {
    workQueue_.cancelAllOperations();
    progressIndicator_->finishHandling();
    // A job that was stopped calls once more when it has ended.
    const bool isStop = isMergeRunning_ && !isMergeStopped_ && !progressIndicator_->window().isRunning();
    isMergeRunning_ = isStop;
    isMergeStopped_ = isStop;
    if (isStop) {
        window_->statusBar()->showMessage(QStringLiteral("Writing the pages collected until now …"));
    } else {
        window_->statusBar()->clearMessage();
        setCommandsEnabled(true);
    }
}

void MainWindowController::setCommandsEnabled(bool enabled) {
    if (areCommandsEnabled_ == enabled) return;
    areCommandsEnabled_ = enabled;
    tableView_->setEnabled(enabled);
    if (enabled) tableView_->setFocus();
    ui_->toolbar->validateItems();
}

void MainWindowController::quit() {
    workQueue_.cancelAllOperations();
    workQueue_.waitUntilAllOperationsAreFinished();
    Q_EMIT quitRequested();
}

std::shared_ptr<MergeOperation> MainWindowController::MergeOper() const {
    const std::lock_guard lock(mergeOperMutex_);
    return mergeOper_;
}

void MainWindowController::setMergeOper(std::shared_ptr<MergeOperation> operation) {
    const std::lock_guard lock(mergeOperMutex_);
    mergeOper_ = std::move(operation);
}

}  // namespace quillon
