#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace quillon {

/// A message with one button. Main thread only.
class Alert {
public:
    /// Is given the alert's window, which is still visible, for the callback to order out.
    using DidEnd = std::function<void(QWidget& alert)>;

    Alert() = delete;

    /// Shows the message as a sheet in front of `modalForWindow` and returns at once. The sheet is named "alert" and
    /// destroys itself some time after its end.
    static void beginSheet(const QString& messageText, const QString& defaultButton, const QString& informativeText,
                           QWidget& modalForWindow, DidEnd didEndSelector);

    /// Shows the message in the style of a warning and returns when it was answered. Blocks all windows.
    static void runModal(const QString& messageText, const QString& button);
};

}  // namespace quillon
