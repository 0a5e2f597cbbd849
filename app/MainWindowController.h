#pragma once

#include "app/ProgressWindowController.h"
#include "filelist/DecryptWindowController.h"
#include "filelist/MergeWindowController.h"
#include "filelist/TableViewDataSource.h"
#include "merge/MergeOwner.h"
#include "platform/jobs/OperationQueue.h"
#include "platform/ui/TableDelegate.h"
#include "settings/SettingWindowController.h"

#include <QIcon>
#include <QMainWindow>
#include <QObject>
#include <QUrl>

#include <memory>
#include <mutex>

namespace quillon {

class MergeOperation;
class Panels;
class TableView;
class UserDefaults;
class Workspace;
namespace Ui {
class MainWindow;
}

/// The main window: the list of files, the commands that work on it, and the run of a merge. Owns what lives as long as
/// the program: the list, the sheets, the queue of merge jobs. Main thread only, but for MergeOper.
class MainWindowController final : public QObject, public MergeOwner, public TableDelegate {
    Q_OBJECT

public:
    /// Loads the window, without showing it, and the settings that the store holds. Panels, workspace and store must
    /// outlive the controller.
    MainWindowController(Panels& panels, Workspace& workspace, UserDefaults& defaults);
    ~MainWindowController() override;

    [[nodiscard]] QMainWindow& window() noexcept { return *window_; }
    [[nodiscard]] TableViewDataSource& tableViewDataSource() noexcept { return *tableViewDataSource_; }

    void settingOnClicked();
    /// Hides the settings sheet.
    void DidEndSheet(SheetDialog& sheet, int returnCode);
    /// Asks for the password of the selected row, of which there must be one, until it is accepted or the sheet is
    /// cancelled.
    void decryptOnClicked();
    void decryptDidEndSheet(SheetDialog& sheet, int returnCode);
    /// Asks for the merge method of the selected row, of which there must be one.
    void mergeMethodOnClicked();
    void mergeMethodDidEndSheet(int returnCode);
    void helpOnClicked();
    void addFileOnClicked();
    void addDirectoryOnClicked();
    void removeFileOnClicked();
    void removeAllOnClicked();
    /// Moves the selected row one place; there must be one, and a row to exchange it with.
    void moveUpOnClicked();
    void moveDownOnClicked();

    /// Checks the list, asks for the output file and starts the merge.
    void mergeOnClicked();
    /// Whether the list can be merged. If not, an alert says why.
    [[nodiscard]] bool validateInput();
    /// Queues the merge of the list into the file.
    void startMerger(const QUrl& url);
    /// The end of a save panel on a platform before version 1038.0.
    void savePanelDidEnd(const QUrl& url, int returnCode);

    /// A merge has begun: shows the progress sheet.
    void startHandling() override;
    /// A merge has ended, or is to end: cancels what is queued and puts the sheet into its finished state. The list and
    /// the settings, which a merge reads where they are, can be changed again when it has ended.
    void stopHandling() override;

    /// Cancels the merge that runs, if any, waits until its file is whole, and asks for the end of the program.
    void quit();

    /// Whether the toolbar item with this label can be used now.
    [[nodiscard]] bool validateToolbarItem(const QString& label) const;

    /// Shows a message as a sheet on the window, and returns false at once.
    bool showAlert(const QString& message);
    void alertDidEnd(QWidget& alert);

    [[nodiscard]] bool tableViewShouldEditTableColumn(const QString& column, int row) override;
    [[nodiscard]] std::unique_ptr<TextFieldCell> tableViewDataCellForTableColumn(const QString& column,
                                                                                 int row) override;
    void tableViewWillDisplayCell(TextFieldCell& cell, const QString& forTableColumn, int row) override;

    /// The merge that was started last, null before the first. May be read and set from any thread.
    [[nodiscard]] std::shared_ptr<MergeOperation> MergeOper() const;
    void setMergeOper(std::shared_ptr<MergeOperation> operation);

Q_SIGNALS:
    void quitRequested();

private:
    void init(UserDefaults& defaults);
    void loadWindow();
    void connectActions();
    void awakeFromNib();
    void moveSelectedRow(int distance);
    void setCommandsEnabled(bool enabled);
    void loadRowIcons();
    void aboutOnClicked();

    Panels& panels_;
    Workspace& workspace_;
    std::unique_ptr<Ui::MainWindow> ui_;
    std::unique_ptr<QMainWindow> window_;
    std::unique_ptr<SettingWindowController> settingWindow_;
    std::unique_ptr<TableViewDataSource> tableViewDataSource_;
    std::unique_ptr<DecryptWindowController> decryptWindow_;
    std::unique_ptr<MergeWindowController> mergeMethodWindow_;
    std::unique_ptr<ProgressWindowController> progressIndicator_;
    QIcon imagePic_;
    QIcon filePic_;
    TableView* tableView_ = nullptr;  // a part of the window
    bool isMergeRunning_ = false;
    bool isMergeStopped_ = false;
    bool areCommandsEnabled_ = true;
    mutable std::mutex mergeOperMutex_;
    std::shared_ptr<MergeOperation> mergeOper_;  // guarded by mergeOperMutex_
    OperationQueue workQueue_;                   // ends first: its jobs use everything above
};

}  // namespace quillon
