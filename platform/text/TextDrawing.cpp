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
    QSizeF sizeOf(const QString& text, const Font& font) {
        const LineLayout& layout = entryOf(text, font).layout;
        return QSizeF(layout.width, layout.ascent + layout.descent) * font.size();
    }
    std::shared_ptr<const TextLine> lineOf(const QString& text, const Font& font) {
        Entry& entry = entryOf(text, font);
        if (!entry.line) entry.line = std::make_shared<const TextLine>(entry.layout, font, fonts_);
        return entry.line;
    }

private:
    struct Entry {
        QString text;
        Font font;
        LineLayout layout;
        std::shared_ptr<const TextLine> line;  // once it was drawn
    };

    Entry& entryOf(const QString& text, const Font& font) {
        for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
            if (entry->text != text || entry->font != font) continue;
            // The one used longest ago is first, and goes first.
            std::rotate(entry, entry + 1, entries_.end());
            return entries_.back();
        }
        constexpr std::size_t most = 8;
        if (entries_.size() == most) entries_.pop_front();
        return entries_.emplace_back(Entry{text, font, LineLayout::of(text, font.family()), nullptr});
    }

    DocumentFonts fonts_;
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

RecentLines& recentLines(DrawingContext& context) {
    auto* lines = std::any_cast<std::shared_ptr<RecentLines>>(&context.store());
    if (!lines) lines = &context.store().emplace<std::shared_ptr<RecentLines>>(std::make_shared<RecentLines>());
    return **lines;
}

}  // namespace

QSizeF sizeWithAttributes(const QString& text, const TextAttributes& attributes) {
    DrawingContext* const context = DrawingContext::current();
    RecentLines alone;
    return (context ? recentLines(*context) : alone).sizeOf(text, fontOf(attributes));
}

void drawAtPoint(const QString& text, QPointF point, const TextAttributes& attributes) {
    DrawingContext* const context = DrawingContext::current();
    if (!context) return;
    context->saveGraphicsState();
    context->setFillColor(colorOf(attributes));
    context->draw(recentLines(*context).lineOf(text, fontOf(attributes)), point);
    context->restoreGraphicsState();
}

}  // namespace quillon
