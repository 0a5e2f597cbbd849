#pragma once

#include "platform/ui/Workspace.h"

#include <QStringList>

namespace quillon::test {

/// Writes down what was to be opened, and opens nothing.
class RecordingWorkspace final : public Workspace {
public:
    QStringList files;
    QList<QUrl> urls;

    bool openFile(const QString& path) override {
        files.append(path);
        return true;
    }
    bool openURL(const QUrl& url) override {
        urls.append(url);
        return true;
    }
};

}  // namespace quillon::test
