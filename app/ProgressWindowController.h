#pragma once

#include "platform/ui/WindowController.h"

#include <QUrl>

#include <memory>
#include <mutex>

namespace quillon {

class MergeOwner;
class Workspace;
namespace Ui {
class ProgressIndicator;
}

/// The sheet that covers the main window while a merge runs. Its button stops the merge; when it has ended, the result
/// can be opened. Main thread only, but for targetURL.
class ProgressWindowController final : public WindowController {
    Q_OBJECT

public:
    /// The sheet is shown in front of `modalForWindow`. `user` is told to stop; both must outlive the controller, and
    /// so must the workspace, which opens the result.
    ProgressWindowController(const QString& windowNibName, MergeOwner& user, QWidget& modalForWindow,
                             Workspace& workspace);
    ~ProgressWindowController() override;

    /// Shows the sheet in its running state: "Stop", an animation, nothing to open yet.
    void startHandling();
    /// Puts it into its finished state: "Close", and the result can be opened. The sheet stays until a button is
    /// pressed.
    void finishHandling();

    /// Ends the sheet and tells the user to stop.
    void stopOrCloseOnClicked();
    /// Ends the sheet and opens the result, if there is a target.
    void openFileOnClicked();
    /// Hides the sheet.
    void didEndSheet(SheetDialog& sheet, int returnCode);

    /// The file that the merge writes; empty until a merge is started. May be read and set from any thread.
    [[nodiscard]] QUrl targetURL() const;
    void setTargetURL(const QUrl& url);

protected:
    void loadInterface(SheetDialog& window) override;
    void windowDidLoad() override;

private:
    void startAnimation();
    void stopAnimation();
    void cancel();

    std::unique_ptr<Ui::ProgressIndicator> ui_;
    mutable std::mutex targetMutex_;
    QUrl targetURL_;  // guarded by targetMutex_
    MergeOwner& progressUser_;
    QWidget& modalForWindow_;
    Workspace& workspace_;
};

}  // namespace quillon
