#include "platform/ui/TextColor.h"

#include <QApplication>
#include <QColor>
#include <QPalette>
#include <QWidget>

namespace quillon {

QColor controlTextColor() {
    return QApplication::palette().color(QPalette::Active, QPalette::WindowText);
}

QColor disabledControlTextColor() {
    return QApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
}

void setTextColor(QWidget& control, const QColor& color) {
    QPalette palette = control.palette();
    for (const auto role : {QPalette::WindowText, QPalette::Text}) palette.setColor(role, color);
    control.setPalette(palette);
}

QColor textColor(const QWidget& control) {
    return control.palette().color(control.foregroundRole());
}

}  // namespace quillon
