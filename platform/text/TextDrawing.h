#pragma once

#include "platform/text/TextAttributes.h"

#include <QPointF>
#include <QSizeF>
#include <QString>

namespace quillon {

// A text is one line: line ends, tabs and other control characters in it are drawn as blanks. Glyphs that the font
// lacks are taken from other installed fonts. Needs a QGuiApplication; may be called on any thread.

/// The size of a text's line box in points.
[[nodiscard]] QSizeF sizeWithAttributes(const QString& text, const TextAttributes& attributes);

/// Draws a text into the current DrawingContext with the lower left corner of its line box at `point`; without a
/// context nothing happens.
void drawAtPoint(const QString& text, QPointF point, const TextAttributes& attributes);

}  // namespace quillon
