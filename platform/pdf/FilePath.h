#pragma once

#include <QFile>
#include <QUrl>

#include <string>

namespace quillon {

/// The path of a local file in the encoding of the file system; empty for any other URL.
[[nodiscard]] inline std::string filePathOf(const QUrl& url) {
    return url.isLocalFile() ? QFile::encodeName(url.toLocalFile()).toStdString() : std::string();
}

}  // namespace quillon
