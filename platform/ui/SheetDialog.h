#pragma once

#include <QDialog>

#include <functional>

namespace quillon {

/// A dialog that is shown as a sheet: it blocks one window, the others stay usable, and nobody waits for it in a nested
/// event loop. Main thread only.
///
/// Whoever begins a sheet ends it with `endSheet`; the callback then decides when the window goes away (`orderOut`).
/// Escape and the close button of the window system do not close it by themselves, they ask: see `cancelRequested`.
class SheetDialog final : public QDialog {
    Q_OBJECT

public:
    /// Is given the sheet, which is still visible unless it was ordered out before, and the code of endSheet.
    using DidEnd = std::function<void(SheetDialog& sheet, int returnCode)>;

    explicit SheetDialog(QWidget* parent = nullptr) : QDialog(parent) {}

    /// Shows the sheet in front of `modalForWindow`, whose child it becomes, and returns at once. A sheet that is
    /// running already stays as it is.
    void beginSheet(QWidget& modalForWindow, DidEnd didEndSelector);

    /// Ends the session and calls its callback once; without a session nothing happens. The callback may begin the
    /// sheet again.
    void endSheet(int returnCode);

    /// Takes the window from the screen.
    void orderOut() { hide(); }

    [[nodiscard]] bool isRunning() const noexcept { return running_; }

    void reject() override { Q_EMIT cancelRequested(); }

Q_SIGNALS:
    void cancelRequested();

private:
    DidEnd didEnd_;
    bool running_ = false;
};

}  // namespace quillon
