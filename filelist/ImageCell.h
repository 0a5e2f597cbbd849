#pragma once

#include "platform/ui/TextFieldCell.h"

class QIcon;
class QPainter;

namespace quillon {

/// A text with a small icon to its left. Lengths as in TextFieldCell.
class ImageCell final : public TextFieldCell {
public:
    /// The icon, which is not owned and must be there when the cell draws; null for none.
    [[nodiscard]] const QIcon* myImage() const noexcept { return image_; }
    void setMyImage(const QIcon* image) noexcept { image_ = image; }

    [[nodiscard]] QSizeF imageSize() const;

    /// Where the icon is drawn, in the coordinates that `doRotate` sets up: without the y of the bounds.
    [[nodiscard]] QRectF imageRectForBounds(const QRectF& bounds) const override;
    [[nodiscard]] QRectF titleRectForBounds(const QRectF& bounds) const override;
    [[nodiscard]] QSizeF cellSize() const override;

    void editWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate,
                       QEvent* event) override;
    void selectWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate, int start,
                         int length) override;

    /// Turns the context upside down, so that its y grows upward from the bottom of a cell whose top is at `y`: images
    /// are drawn with their own y upward.
    void doRotate(QPainter& context, float y) const;

    void drawWithFrame(const QRectF& frame, QWidget& inView) override;

private:
    const QIcon* image_ = nullptr;
};

}  // namespace quillon
