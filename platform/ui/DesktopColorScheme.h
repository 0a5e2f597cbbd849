#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>

namespace quillon {

/// Gives the program dark colours while the desktop prefers them, and follows when that changes. The desktop says so
/// on the session bus, by the settings portal; without a bus or a portal nothing happens, and neither where Qt has dark
/// colours already. Main thread only, one for a program.
class DesktopColorScheme final : public QObject {
    Q_OBJECT

public:
    DesktopColorScheme();

    /// Asks the desktop, without waiting for the answer, and listens from now on.
    void follow();

    [[nodiscard]] bool isDark() const noexcept { return isDark_; }
    /// Changes the colours of all windows, shown or not.
    void setDark(bool dark);

private Q_SLOTS:
    /// Group, key and value of a setting.
    void settingChanged(const QDBusMessage& signal);

private:
    QString lightStyle_;
    bool isDarkAnyway_;
    bool isDark_ = false;
};

}  // namespace quillon
