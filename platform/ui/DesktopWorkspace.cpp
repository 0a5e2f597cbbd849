#include "platform/ui/DesktopWorkspace.h"

#include <QDesktopServices>

namespace quillon {

bool DesktopWorkspace::openFile(const QString& path) {
    return openURL(QUrl::fromLocalFile(path));
}

bool DesktopWorkspace::openURL(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

}  // namespace quillon
