#pragma once

class QColor;
class QWidget;

namespace quillon {

/// The colour of the text of a control that is enabled, in the desktop's present theme.
[[nodiscard]] QColor controlTextColor();
/// The same of one that is disabled.
[[nodiscard]] QColor disabledControlTextColor();

/// Gives the text of a label or field a colour, which it keeps until the next call. One of the two above follows the
/// theme if it is to.
void setTextColor(QWidget& control, const QColor& color, bool followsTheme = true);
[[nodiscard]] QColor textColor(const QWidget& control);

}  // namespace quillon
