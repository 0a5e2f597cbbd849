#pragma once

#include <QVariantMap>

namespace quillon {

/// How a line of text looks: values such as its font and colours under the names of attributes. An attribute that is
/// missing has the text system's default; an empty map is text in the default font and colour.
using TextAttributes = QVariantMap;

}  // namespace quillon
