#pragma once

#include <QColor>
#include <QPushButton>

namespace quillon {

/// A button that shows a colour and lets a person choose another in a colour dialog, which blocks only its window.
class ColorWell final : public QPushButton {
    Q_OBJECT

public:
    explicit ColorWell(QWidget* parent = nullptr);

    /// Opaque black at first.
    [[nodiscard]] QColor color() const { return color_; }
    /// An invalid colour changes nothing. Does not count as a choice.
    void setColor(const QColor& color);

Q_SIGNALS:
    /// A person has chosen the colour that is shown now.
    void colorChosen();

private:
    void openPanel();
    void showColor();

    QColor color_ = Qt::black;
};

}  // namespace quillon
