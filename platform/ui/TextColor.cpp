#include "platform/ui/TextColor.h"

#include <QApplication>
#include <QColor>
#include <QEvent>
#include <QObject>
#include <QPalette>
#include <QWidget>

namespace quillon {

QColor controlTextColor() {
    return QApplication::palette().color(QPalette::Active, QPalette::WindowText);
}

QColor disabledControlTextColor() {
    return QApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
}

namespace {

void paintText(QWidget& control, const QColor& color) {
    QPalette palette = control.palette();
    for (const auto role : {QPalette::WindowText, QPalette::Text}) palette.setColor(role, color);
    control.setPalette(palette);
}

/// Keeps the text of its parent in one of the two colours of the theme, whichever theme it is.
class ThemeColor final : public QObject {
public:
    ThemeColor(QWidget& control, bool enabled) : QObject(&control), control_(control), enabled_(enabled) {
        control.installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const QColor color = enabled_ ? controlTextColor() : disabledControlTextColor();
        if (event->type() == QEvent::PaletteChange && textColor(control_) != color) paintText(control_, color);
        return false;
    }

private:
    QWidget& control_;
    bool enabled_;
};

}  // namespace

void setTextColor(QWidget& control, const QColor& color, bool followsTheme) {
    const QObjectList children = control.children();
    for (QObject* child : children) delete dynamic_cast<ThemeColor*>(child);
    paintText(control, color);
    if (!followsTheme) return;
    const bool enabled = color == controlTextColor();
    if (enabled || color == disabledControlTextColor()) new ThemeColor(control, enabled);
}

QColor textColor(const QWidget& control) {
    return control.palette().color(control.foregroundRole());
}

}  // namespace quillon
