#pragma once

class QIcon;
class QPainter;
class QRectF;

namespace quillon {

/// Draws the image into a rectangle of a context whose y grows upward, as pictures have it: upright where the context
/// was turned over, upside down where it was not.
void drawImageInRect(const QIcon& image, QPainter& context, const QRectF& rect);

}  // namespace quillon
