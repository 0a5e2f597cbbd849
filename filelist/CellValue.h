#pragma once

#include <QString>
#include <QVariant>

namespace quillon {

class cacheData;

/// What a column of the main table shows of an entry: a number for what has just been measured or is known, else a
/// text. Size, page count and need of a password are measured, which reads the file, and stored in the entry when they
/// are not known yet. Main thread only.
[[nodiscard]] QVariant cellValue(cacheData& entry, const QString& column);

}  // namespace quillon
