#pragma once

#include "pdf/Geometry.h"
#include "pdf/write/Painting.h"

namespace quillon {

/// Something that can be drawn on pages, any number of times. It is described in points around its own origin, and
/// takes the fill colour of where it is drawn.
class Drawing {
public:
    Drawing() = default;
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    virtual ~Drawing() = default;

    /// The operators that draw it. They leave the graphics state as it was but for what they set themselves at every
    /// use, such as a font. Empty when nothing of it would be seen.
    [[nodiscard]] virtual pdf::PaintContent content() const = 0;
    /// All that is drawn lies inside.
    [[nodiscard]] virtual pdf::Rectangle bounds() const = 0;
};

}  // namespace quillon
