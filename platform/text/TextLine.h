#pragma once

#include "platform/pdf/Drawing.h"
#include "platform/text/DocumentFonts.h"
#include "platform/text/Font.h"
#include "platform/text/LineLayout.h"

#include <memory>

namespace quillon {

/// A line of text in a font, as a drawing. Its origin is the lower left corner of its line box.
class TextLine final : public Drawing {
public:
    /// `fonts` are those of the document that it is drawn in.
    TextLine(LineLayout layout, const Font& font, std::shared_ptr<DocumentFonts> fonts);

    /// Points.
    [[nodiscard]] double width() const noexcept { return layout_.width * size_; }
    /// Of the line box, in points.
    [[nodiscard]] double height() const noexcept { return (layout_.ascent + layout_.descent) * size_; }

    [[nodiscard]] pdf::PaintContent content() const override;
    [[nodiscard]] pdf::Rectangle bounds() const override;

private:
    LineLayout layout_;
    double size_;
    std::shared_ptr<DocumentFonts> fonts_;
};

}  // namespace quillon
