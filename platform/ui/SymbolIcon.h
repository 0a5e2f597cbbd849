#pragma once

#include <QIcon>
#include <QString>

namespace quillon {

/// An icon from an SVG drawing in two colours: #000000 is drawn in the colour of the text around it, #0000ff in the
/// colour of selections, so that one drawing fits light and dark themes. Sharp at every size. Main thread only.
///
/// A drawing that does not exist gives an empty icon.
[[nodiscard]] QIcon symbolIcon(const QString& path);

}  // namespace quillon
