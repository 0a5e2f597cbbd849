#pragma once

#include "platform/text/Typeface.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillon {

/// Glyphs on a line, in the order in which they are seen, from the left. Lengths are in ems: 1 is the size of the font.
struct LineLayout {
    struct Glyph {
        std::uint32_t index;
        double x;  ///< of its origin, from the left end of the line
        double y;  ///< above the baseline
    };
    /// Glyphs that together show a piece of the text; from the first to the last of them nothing of it can be told
    /// apart.
    struct Cluster {
        std::size_t font;  ///< index into `fonts`
        QString text;
        std::vector<Glyph> glyphs;
    };

    double width = 0;
    double ascent = 0;   ///< of the line box above the baseline
    double descent = 0;  ///< of the line box below it, positive
    std::vector<std::shared_ptr<const Typeface>> fonts;
    std::vector<Cluster> clusters;

    /// Lays `text` out as one line in a font family, with glyphs of other families where it has none. Line ends, tabs
    /// and other control characters are blanks, halves of surrogate pairs are replacement characters.
    [[nodiscard]] static LineLayout of(const QString& text, const QString& family);
};

}  // namespace quillon
