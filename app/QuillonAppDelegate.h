#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quillon {

/// Shows and hides the program's one window. Main thread only.
class QuillonAppDelegate final : public QObject {
    Q_OBJECT

public:
    /// The main window, which is not owned.
    [[nodiscard]] QWidget* window() const noexcept { return window_; }
    void setWindow(QWidget* window);

    /// Brings the window to the front.
    void applicationDidFinishLaunching();
    /// Hides the window. The program keeps running.
    void windowWillClose();
    /// Called when the program is started again while it runs. Brings the window back if no window is visible; true,
    /// that is the platform shall do what it does on activation.
    [[nodiscard]] bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// What the platform does on activation: lets the window have the focus, if it is on the screen.
    void activate();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeKeyAndOrderFront();

    QPointer<QWidget> window_;
};

}  // namespace quillon
