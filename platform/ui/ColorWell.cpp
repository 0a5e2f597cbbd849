#include "platform/ui/ColorWell.h"

#include <QColorDialog>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

namespace quillon {
namespace {

constexpr QSize swatchSize(40, 16);
constexpr int finest = 4;  // pixels to a point on the sharpest screens

}  // namespace

ColorWell::ColorWell(QWidget* parent) : QPushButton(parent) {
    setAutoDefault(false);
    setIconSize(swatchSize);
    connect(this, &QPushButton::clicked, this, &ColorWell::openPanel);
    showColor();
}

void ColorWell::setColor(const QColor& color) {
    if (!color.isValid()) return;
    color_ = color;
    showColor();
}

void ColorWell::openPanel() {
    auto* panel = new QColorDialog(color_, this);
    panel->setObjectName(QStringLiteral("colorPanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setWindowModality(Qt::WindowModal);
    connect(panel, &QColorDialog::colorSelected, this, [this](const QColor& color) {
        setColor(color);
        Q_EMIT colorChosen();
    });
    panel->open();
}

void ColorWell::showColor() {
    QPixmap swatch(swatchSize * finest);
    swatch.fill(color_);
    QPainter painter(&swatch);
    // The frame keeps a colour like that of the button apart from it.
    painter.setPen(QPen(palette().color(QPalette::Mid), 2 * finest));
    painter.drawRect(swatch.rect());
    painter.end();
    setIcon(QIcon(swatch));
    setAccessibleDescription(color_.name());
}

}  // namespace quillon
