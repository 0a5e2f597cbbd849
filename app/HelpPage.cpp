#include "app/HelpPage.h"

#include <QCoreApplication>
#include <QDir>

namespace quillon {

QUrl helpPage() {
    const QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/quillon/help"));
    return QUrl::fromLocalFile(QDir::cleanPath(folder.filePath(QStringLiteral("index.html"))));
}

}  // namespace quillon
