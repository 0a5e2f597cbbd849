#include "platform/text/TextLine.h"

#include "pdf/object/Object.h"
#include "platform/pdf/TextString.h"

#include <cmath>
#include <string>
#include <utility>

namespace quillon {

namespace {

double rounded(double value) {
    return std::round(value * 1000) / 1000;
}

/// Writes the operators that show a line.
class LineWriter {
public:
    LineWriter(double size, double descent) : size_(size) {
        operators_ = "BT ";
        if (descent != 0) {
            operators_ += "0 ";
            pdf::writeReal(operators_, rounded(descent * size));
            operators_ += " Td ";
        }
    }

    /// Shows the glyphs of a cluster, with the text that they mean beside them where they cannot tell it themselves.
    void show(const LineLayout::Cluster& cluster, DocumentFont& font) {
        // Every glyph may mean a character of its own, or the only one all of them.
        const QList<uint> characters = cluster.text.toUcs4();
        const bool oneByOne = static_cast<std::size_t>(characters.size()) == cluster.glyphs.size();
        std::vector<DocumentFont::Use> uses;
        bool told = cluster.glyphs.size() == 1 || oneByOne;
        for (std::size_t i = 0; i < cluster.glyphs.size(); ++i) {
            QString text;
            if (cluster.glyphs.size() == 1) {
                text = cluster.text;
            } else if (oneByOne) {
                const auto character = static_cast<char32_t>(characters[static_cast<qsizetype>(i)]);
                text = QString::fromUcs4(&character, 1);
            }
            uses.push_back(font.use(cluster.glyphs[i].index, text));
            told = told && uses.back().showsText;
        }
        if (!told) beginText(cluster.text);
        for (std::size_t i = 0; i < uses.size(); ++i) showGlyph(uses[i], cluster.glyphs[i]);
        if (!told) endText();
    }

    [[nodiscard]] pdf::PaintContent finish() {
        flush();
        if (pieces_.empty()) return {};
        pieces_.push_back({operators_ + "ET", nullptr});
        return std::move(pieces_);
    }

private:
    void beginText(const QString& text) {
        flush();
        operators_ += "/Span<</ActualText";
        pdf::writeString(operators_, toTextString(text));
        operators_ += ">>BDC ";
    }
    void endText() {
        flush();
        operators_ += "EMC ";
    }

    void showGlyph(const DocumentFont::Use& use, const LineLayout::Glyph& glyph) {
        if (use.resource != font_) setFont(use.resource);
        if (const double rise = rounded(glyph.y * size_); rise != rise_) setRise(rise);
        // What the pen is off by, in thousandths of an em. Less than one is nothing that could be seen, and does not
        // add up, since it stays with the pen.
        const double off = std::round(pen_ - glyph.x * 1000);
        if (off != 0) {
            flushCodes();
            if (!array_.empty() && array_.back() != ')' && array_.back() != '>') array_ += ' ';
            array_ += std::to_string(static_cast<long long>(off));
            pen_ -= off;
        }
        codes_ += use.code;
        pen_ += use.advance;
    }

    void setFont(const std::shared_ptr<const pdf::PaintResource>& font) {
        flush();
        font_ = font;
        pieces_.push_back({std::move(operators_), font});
        operators_ = ' ';
        pdf::writeReal(operators_, size_);
        operators_ += " Tf ";
    }

    void setRise(double rise) {
        flush();
        rise_ = rise;
        pdf::writeReal(operators_, rise);
        operators_ += " Ts ";
    }

    void flushCodes() {
        if (codes_.empty()) return;
        pdf::writeString(array_, codes_);
        codes_.clear();
    }

    void flush() {
        if (array_.empty() && !codes_.empty()) {
            pdf::writeString(operators_, codes_);
            codes_.clear();
            operators_ += "Tj ";
            return;
        }
        flushCodes();
        if (array_.empty()) return;
        operators_ += '[' + array_ + "]TJ ";
        array_.clear();
    }

    double size_;
    pdf::PaintContent pieces_;
    std::string operators_;
    std::string array_;  // of a TJ that is being put together
    std::string codes_;  // of its last string
    std::shared_ptr<const pdf::PaintResource> font_;
    double pen_ = 0;  // thousandths of an em
    double rise_ = 0;
};

pdf::PaintContent contentOf(const LineLayout& layout, double size, DocumentFonts& fonts) {
    LineWriter writer(size, layout.descent);
    for (const auto& cluster : layout.clusters) writer.show(cluster, fonts.fontFor(*layout.fonts[cluster.font]));
    return writer.finish();
}

/// Glyphs may reach beyond their line box, but hardly by more than their size.
pdf::Rectangle boundsOf(const LineLayout& layout, double size) {
    return {-size, -size, std::ceil(layout.width * size + size),
            std::ceil((layout.ascent + layout.descent) * size + size)};
}

}  // namespace

TextLine::TextLine(const LineLayout& layout, const Font& font, DocumentFonts& fonts)
    : content_(contentOf(layout, font.size(), fonts)), bounds_(boundsOf(layout, font.size())) {}

}  // namespace quillon
