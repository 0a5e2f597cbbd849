#include "platform/ui/TextFieldCell.h"

#include "platform/ui/GraphicsContext.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QLineEdit>
#include <QPainter>
#include <QWidget>

#include <algorithm>

namespace quillon {

QSizeF TextFieldCell::cellSize() const {
    const QFontMetricsF metrics(font_);
    constexpr double lowestRow = 24;
    return {metrics.horizontalAdvance(stringValue_) + 2 * margin, std::max(metrics.height() + 2 * margin, lowestRow)};
}

QRectF TextFieldCell::imageRectForBounds(const QRectF& /*bounds*/) const {
    return {};
}

QRectF TextFieldCell::titleRectForBounds(const QRectF& bounds) const {
    return bounds;
}

void TextFieldCell::editWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate,
                                  QEvent* event) {
    editor.setParent(&inView);
    editor.setGeometry(frame.toRect());
    editor.setText(stringValue_);
    if (delegate != nullptr) editor.installEventFilter(delegate);
    editor.show();
    editor.setFocus();
    if (event != nullptr) QCoreApplication::sendEvent(&editor, event);
}

void TextFieldCell::selectWithFrame(const QRectF& frame, QWidget& inView, QLineEdit& editor, QObject* delegate,
                                    int start, int length) {
    TextFieldCell::editWithFrame(frame, inView, editor, delegate, nullptr);
    editor.setSelection(start, length);
}

void TextFieldCell::drawWithFrame(const QRectF& frame, QWidget& /*inView*/) {
    QPainter& painter = GraphicsContext::current();
    painter.save();
    painter.setFont(font_);
    painter.setPen(textColor_);
    const QRectF line = frame.adjusted(margin, 0, -margin, 0);
    const QFontMetricsF metrics(font_, painter.device());
    painter.drawText(line, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     metrics.elidedText(stringValue_, Qt::ElideMiddle, line.width()));
    painter.restore();
}

}  // namespace quillon
