#pragma once

#include <QByteArray>
#include <QColor>

namespace quillon {

/// A colour as bytes for a UserDefaults: `#AARRGGBB`, eight bits a component, opacity first.
class ColorArchive {
public:
    ColorArchive() = delete;

    [[nodiscard]] static QByteArray archivedDataWithRootObject(const QColor& color);

    /// The colour; an invalid one when the bytes are none that archivedDataWithRootObject gave.
    [[nodiscard]] static QColor unarchiveObjectWithData(const QByteArray& data);
};

}  // namespace quillon
