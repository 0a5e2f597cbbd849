#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace quillon {

/// Sees to it that a program runs once for each user and display: the first to claim the place has it until it ends,
/// however it ends, and the others can ask it to show itself. Main thread only.
class RunningProgram final : public QObject {
    Q_OBJECT

public:
    /// `name` tells programs apart; the display is that of the running session.
    explicit RunningProgram(const QString& name);
    ~RunningProgram() override;

    /// Takes the place. False when another process has it.
    [[nodiscard]] bool claim();

    /// Asks the process that has the place to show itself, and waits up to `milliseconds` for it to say that it has.
    [[nodiscard]] bool askToReopen(int milliseconds) const;

    /// Called, after `claim`, when another process asks.
    void setReopenHandler(std::function<void()> handler) { reopen_ = std::move(handler); }

private:
    void answer();

    QString socketPath_;
    QLockFile lock_;
    QLocalServer server_;
    std::function<void()> reopen_;
};

}  // namespace quillon
