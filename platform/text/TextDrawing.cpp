#include "platform/text/TextDrawing.h"

#include "platform/pdf/DrawingContext.h"
#include "platform/text/DocumentFonts.h"
#include "platform/text/Font.h"
#include "platform/text/TextLine.h"

#include <algorithm>
#include <deque>
#include <memory>

namespace quillon {

namespace {

/// The lines that were laid out last for one document, so that measuring and drawing a text, and drawing it on page
/// after page, lay it out once.
class RecentLines {
public:
    std::shared_ptr<const TextLine> lineOf(const QString& text, const Font& font) {
        for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
            if (entry->text != text || entry->font != font) continue;
            // The one used longest ago is first, and goes first.
            std::rotate(entry, entry + 1, entries_.end());
            return entries_.back().line;
        }
        auto line = std::make_shared<const TextLine>(LineLayout::of(text, font.family()), font, fonts_);
        constexpr std::size_t most = 8;
        if (entries_.size() == most) entries_.pop_front();
        entries_.push_back({text, font, line});
        return line;
    }

private:
    struct Entry {
        QString text;
        Font font;
        std::shared_ptr<const TextLine> line;
    };

    std::shared_ptr<DocumentFonts> fonts_ = std::make_shared<DocumentFonts>();
    std::deque<Entry> entries_;
};

Font fontOf(const TextAttributes& attributes) {
    const QVariant font = attributes.value(NSFontAttributeName);
    return font.canConvert<Font>() ? font.value<Font>() : Font();
}

Color colorOf(const TextAttributes& attributes) {
    const QVariant color = attributes.value(NSForegroundColorAttributeName);
    return color.canConvert<Color>() ? color.value<Color>() : Color::blackColor();
}

std::shared_ptr<const TextLine> lineOf(const QString& text, const TextAttributes& attributes) {
    DrawingContext* const context = DrawingContext::current();
    RecentLines alone;
    if (!context) return alone.lineOf(text, fontOf(attributes));
    auto* lines = std::any_cast<std::shared_ptr<RecentLines>>(&context->store());
    if (!lines) lines = &context->store().emplace<std::shared_ptr<RecentLines>>(std::make_shared<RecentLines>());
    return (*lines)->lineOf(text, fontOf(attributes));
}

}  // namespace

QSizeF sizeWithAttributes(const QString& text, const TextAttributes& attributes) {
    const auto line = lineOf(text, attributes);
    return {line->width(), line->height()};
}

void drawAtPoint(const QString& text, QPointF point, const TextAttributes& attributes) {
    DrawingContext* const context = DrawingContext::current();
    if (!context) return;
    context->saveGraphicsState();
    context->setFillColor(colorOf(attributes));
    context->draw(lineOf(text, attributes), point);
    context->restoreGraphicsState();
}

}  // namespace quillon
