#pragma once

#include <QString>
#include <QUrl>

namespace quillon {

/// The file URL of a path, which counts from the current folder unless it begins with a slash.
[[nodiscard]] QUrl driverFileUrl(const QString& path);

/// Whether the file is a regular one that begins with `%PDF`. Does not wait for the other end of a FIFO.
[[nodiscard]] bool beginsAsPdf(const QString& path);

}  // namespace quillon
