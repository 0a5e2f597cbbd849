#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <initializer_list>
#include <utility>

namespace quillon {

/// How a line of text looks: values under the names of attributes. An attribute that is missing has the text system's
/// default; an empty map is text in the default font, 12 points, black.
using TextAttributes = QVariantMap;

/// The font, a Font.
inline const QString NSFontAttributeName = QStringLiteral("NSFontAttributeName");
/// The colour of the text, a Color.
inline const QString NSForegroundColorAttributeName = QStringLiteral("NSForegroundColorAttributeName");
/// The colour of a line through the text, a Color. There is no attribute that switches such a line on.
inline const QString NSStrikethroughColorAttributeName = QStringLiteral("NSStrikethroughColorAttributeName");

/// Attributes from values and their names, in order. The first absent (invalid) value ends the list: without a font in
/// front the attributes are empty, however many follow.
[[nodiscard]] TextAttributes attributesWithObjectsAndKeys(
    std::initializer_list<std::pair<QVariant, QString>> objectsAndKeys);

}  // namespace quillon
