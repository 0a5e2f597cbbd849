#pragma once

#include "platform/ui/Workspace.h"

namespace quillon {

/// The applications that the desktop has for each kind of file.
class DesktopWorkspace final : public Workspace {
public:
    bool openFile(const QString& path) override;
    bool openURL(const QUrl& url) override;
};

}  // namespace quillon
