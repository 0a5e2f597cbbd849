#include "platform/ui/RunningProgram.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QStandardPaths>

#include <algorithm>
#include <unistd.h>

namespace quillon {
namespace {

constexpr auto question = "reopen\n";
constexpr auto answerText = "shown\n";

/// The folder of the session for sockets and the like, which only its user can look into.
QString runtimeFolder() {
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!folder.isEmpty() && QDir(folder).exists()) return folder;
    return QDir::tempPath();
}

/// The same for all processes of a user on a display. A socket's path may have about a hundred bytes, hence the digest.
QString placePath(const QString& name) {
    QByteArray display = qgetenv("WAYLAND_DISPLAY");
    if (display.isEmpty()) display = qgetenv("DISPLAY");
    const QByteArray digest = QCryptographicHash::hash(display, QCryptographicHash::Sha256).toHex().left(12);
    return QStringLiteral("%1/%2-%3-%4").arg(runtimeFolder(), name).arg(getuid()).arg(QString::fromLatin1(digest));
}

}  // namespace

RunningProgram::RunningProgram(const QString& name)
    : socketPath_(placePath(name) + QStringLiteral(".socket")), lock_(placePath(name) + QStringLiteral(".lock")) {
    // Only the death of its holder frees the lock, not its age.
    lock_.setStaleLockTime(0);
    connect(&server_, &QLocalServer::newConnection, this, &RunningProgram::answer);
}

RunningProgram::~RunningProgram() = default;

bool RunningProgram::claim() {
    if (!lock_.tryLock(0) && lock_.error() == QLockFile::LockFailedError) return false;
    // A process that was killed leaves its socket behind; with the lock held nobody listens there.
    QLocalServer::removeServer(socketPath_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(socketPath_)) {
        qWarning().noquote() << "Another launch will not find this program:" << server_.errorString();
    }
    return true;
}

bool RunningProgram::askToReopen(int milliseconds) const {
    QElapsedTimer timer;
    timer.start();
    // The other may have the lock and not listen yet.
    do {
        QLocalSocket socket;
        socket.connectToServer(socketPath_);
        // At least a moment: less than none would be for ever.
        const auto left = [&] { return std::max(1, milliseconds - static_cast<int>(timer.elapsed())); };
        if (!socket.waitForConnected(left())) {
            usleep(20'000);
            continue;
        }
        socket.write(question);
        return socket.waitForBytesWritten(left()) && socket.waitForReadyRead(left()) && socket.readAll() == answerText;
    } while (timer.elapsed() < milliseconds);
    return false;
}

void RunningProgram::answer() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->readLine() != question) return;
            if (reopen_) reopen_();
            socket->write(answerText);
            socket->disconnectFromServer();
        });
    }
}

}  // namespace quillon
