#include "filelist/ImageCell.h"

#include "platform/ui/GraphicsContext.h"
#include "platform/ui/ImageDrawing.h"

#include <QIcon>
#include <QPainter>
#include <QTransform>

namespace quillon {
namespace {

constexpr double imageMargin = 3;
constexpr double imageLength = 16;

}  // namespace

QSizeF ImageCell::imageSize() const {
    return {imageLength, imageLength};
}

QRectF ImageCell::imageRectForBounds(const QRectF& bounds) const {
    if (image_ == nullptr) return {};
    return {QPointF(bounds.x() + imageMargin, (bounds.height() - imageLength) / 2), imageSize()};
}

QRectF ImageCell::titleRectForBounds(const QRectF& bounds) const {
    if (image_ == nullptr) return TextFieldCell::titleRectForBounds(bounds);
    return bounds.adjusted(imageMargin + imageLength, 0, 0, 0);
}

QSizeF ImageCell::cellSize() const {
    QSizeF size = TextFieldCell::cellSize();
    size.rwidth() += image_ != nullptr ? imageMargin + imageLength : imageMargin;
    return size;
}

void ImageCell::editWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate,
                              QEvent* event) {
    TextFieldCell::editWithFrame(titleRectForBounds(frame), inView, editor, delegate, event);
}

void ImageCell::selectWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate, int start,
                                int length) {
    TextFieldCell::selectWithFrame(titleRectForBounds(frame), inView, editor, delegate, start, length);
}

void ImageCell::doRotate(QPainter& context, float y) const {
    const double height = TextFieldCell::cellSize().height();
    context.setTransform(QTransform(1, 0, 0, -1, 0, static_cast<double>(y) + height), true);
}

void ImageCell::drawWithFrame(const QRectF& frame, QWidget& inView) {
    if (image_ == nullptr) {
        TextFieldCell::drawWithFrame(frame, inView);
        return;
    }
    QPainter& context = GraphicsContext::current();
    context.save();
    doRotate(context, static_cast<float>(frame.y()));
    const QRectF icon = imageRectForBounds(frame);
    drawImageInRect(*image_, context, icon);
    context.restore();

    const double left = icon.x() + icon.width() + imageMargin;
    TextFieldCell::drawWithFrame(QRectF(left, frame.y(), frame.x() + frame.width() - left, frame.height()), inView);
}

}  // namespace quillon
