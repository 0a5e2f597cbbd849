#pragma once

#include "pdf/Geometry.h"

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillon {

/// The file of a font as far as showing its glyphs in a PDF file asks for. Lengths are in thousandths of an em.
class FontFile {
public:
    /// Where the pen goes: to a point, in a straight line to a point, or in a curve to the last of three points.
    struct PathStep {
        enum class Kind { Move, Line, Curve };

        struct Point {
            double x;
            double y;
        };

        Kind kind;
        std::array<Point, 3> points;
    };
    /// A glyph's shape, seen from its origin.
    struct Outline {
        std::vector<PathStep> steps;
        pdf::Rectangle box;
        bool isEvenOdd = false;  ///< what is inside, by the rule of that name; else by that of the winding number
    };
    /// A glyph's own picture: where it lies, seen from its origin, and its pixels, row by row from the top.
    struct Picture {
        pdf::Rectangle place;
        int width;
        int height;
        std::string colors;  ///< RGB
        std::string alphas;
    };

    FontFile() = default;
    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;
    virtual ~FontFile() = default;

    /// Whether glyphs of it can and may be embedded: it has outlines of a kind that PDF knows, and its maker does not
    /// forbid it. The restrictions that a font states (OpenType `fsType`) are honoured where they rule out a subset in
    /// a file that everybody may read: restricted licence, no subsetting, bitmaps only.
    [[nodiscard]] virtual bool isEmbeddable() const = 0;
    /// PostScript outlines; otherwise TrueType.
    [[nodiscard]] virtual bool hasPostScriptOutlines() const = 0;

    [[nodiscard]] virtual std::string postScriptName() const = 0;
    [[nodiscard]] virtual double advance(std::uint32_t glyph) const = 0;
    [[nodiscard]] virtual double ascent() const = 0;
    /// Negative.
    [[nodiscard]] virtual double descent() const = 0;
    [[nodiscard]] virtual pdf::Rectangle boundingBox() const = 0;

    /// The font program with these glyphs alone, under their old indexes: a TrueType file, or a bare CFF font. Nothing
    /// when the file is damaged.
    [[nodiscard]] virtual std::optional<std::string> subset(const std::set<std::uint32_t>& glyphs) const = 0;

    // The same of any font, also one whose file is of a kind that the above cannot read.
    [[nodiscard]] virtual double drawnAdvance(std::uint32_t glyph) const = 0;
    [[nodiscard]] virtual double drawnAscent() const = 0;
    /// Negative.
    [[nodiscard]] virtual double drawnDescent() const = 0;
    /// Without steps when the glyph has no shape.
    [[nodiscard]] virtual Outline outline(std::uint32_t glyph) const = 0;
    /// Nothing when the glyph has no picture.
    [[nodiscard]] virtual std::optional<Picture> picture(std::uint32_t glyph) const = 0;
};

}  // namespace quillon
