#pragma once

#include "platform/ui/SheetDialog.h"

#include <QObject>
#include <QPointer>
#include <QString>

namespace quillon {

/// Owns a window that is made from an interface file when it is first asked for. Main thread only.
///
/// A subclass builds the interface in `loadInterface`, usually by the setupUi of its Ui class.
class WindowController : public QObject {
    Q_OBJECT

public:
    /// `windowNibName` is the name of the interface file; the window takes it as its object name.
    explicit WindowController(const QString& windowNibName);
    WindowController(const WindowController&) = delete;
    WindowController& operator=(const WindowController&) = delete;
    ~WindowController() override;

    /// The window; loaded by the first call, which runs windowDidLoad.
    [[nodiscard]] SheetDialog& window();
    [[nodiscard]] bool isWindowLoaded() const noexcept { return loaded_; }
    [[nodiscard]] const QString& windowNibName() const noexcept { return windowNibName_; }

protected:
    /// Puts the controls into the empty window and connects them.
    virtual void loadInterface(SheetDialog& window) = 0;
    /// Called once, after the interface was loaded.
    virtual void windowDidLoad() {}

private:
    QString windowNibName_;
    QPointer<SheetDialog> window_;  // owned; a window in front of which it was shown may have destroyed it
    bool loaded_ = false;
};

}  // namespace quillon
