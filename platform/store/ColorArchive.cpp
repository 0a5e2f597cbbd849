#include "platform/store/ColorArchive.h"

#include <QString>

namespace quillon {

QByteArray ColorArchive::archivedDataWithRootObject(const QColor& color) {
    return color.name(QColor::HexArgb).toLatin1();
}

QColor ColorArchive::unarchiveObjectWithData(const QByteArray& data) {
    constexpr qsizetype length = 9;
    // QColor would take a name such as "red", and other lengths with other meanings.
    if (data.size() != length || data.front() != '#') return {};
    return QColor(QString::fromLatin1(data));
}

}  // namespace quillon
