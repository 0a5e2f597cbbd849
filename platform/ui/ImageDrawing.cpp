#include "platform/ui/ImageDrawing.h"

#include <QIcon>
#include <QPainter>

namespace quillon {

void drawImageInRect(const QIcon& image, QPainter& context, const QRectF& rect) {
    context.save();
    context.translate(rect.left(), rect.bottom());
    context.scale(1, -1);
    context.setRenderHint(QPainter::SmoothPixmapTransform);
    const double scale = context.device()->devicePixelRatioF();
    const QPixmap pixels = image.pixmap(rect.size().toSize(), scale);
    context.drawPixmap(QRectF(QPointF(0, 0), rect.size()), pixels, pixels.rect());
    context.restore();
}

}  // namespace quillon
