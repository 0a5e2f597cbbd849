#pragma once

#include <QString>
#include <QUrl>

namespace quillon {

/// Opens things in other programs. A test gives the windows one that writes down what it was asked for. Main thread
/// only.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// Opens a file in its default application. False when none could be started; nothing is shown then.
    virtual bool openFile(const QString& path) = 0;
    /// Opens an address, of a file or of the web, likewise.
    virtual bool openURL(const QUrl& url) = 0;
};

}  // namespace quillon
