#pragma once

#include "platform/pdf/Drawing.h"
#include "platform/text/DocumentFonts.h"
#include "platform/text/Font.h"
#include "platform/text/LineLayout.h"

namespace quillon {

/// A line of text in a font, as a drawing. Its origin is the lower left corner of its line box.
class TextLine final : public Drawing {
public:
    /// The glyphs are from now on in `fonts`, those of the document that it is drawn in.
    TextLine(const LineLayout& layout, const Font& font, DocumentFonts& fonts);

    [[nodiscard]] pdf::PaintContent content() const override { return content_; }
    [[nodiscard]] pdf::Rectangle bounds() const override { return bounds_; }

private:
    // Of the layout, which takes many times the room, nothing is kept: with page numbers every page has a line.
    pdf::PaintContent content_;
    pdf::Rectangle bounds_;
};

}  // namespace quillon
