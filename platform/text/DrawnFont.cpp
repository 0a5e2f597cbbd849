#include "platform/text/DrawnFont.h"

#include "pdf/object/Object.h"
#include "pdf/write/PaintWriter.h"
#include "platform/text/GlyphTexts.h"

#include <QImage>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace quillon {

namespace {

void appendPoint(std::string& out, const QPainterPath::Element& element, double scale) {
    for (const double value : {element.x * scale, -element.y * scale}) {
        pdf::writeReal(out, std::round(value * 10) / 10);
        out += ' ';
    }
}

std::string operatorsOf(const QPainterPath& path, double scale) {
    std::string out;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        switch (element.type) {
            case QPainterPath::MoveToElement:
                if (i > 0) out += "h ";
                appendPoint(out, element, scale);
                out += "m ";
                break;
            case QPainterPath::LineToElement:
                appendPoint(out, element, scale);
                out += "l ";
                break;
            case QPainterPath::CurveToElement:
                for (int point = i; point < i + 3; ++point) appendPoint(out, path.elementAt(point), scale);
                out += "c ";
                i += 2;
                break;
            case QPainterPath::CurveToDataElement:
                break;
        }
    }
    return out + (path.fillRule() == Qt::OddEvenFill ? "f*" : "f");
}

std::uint32_t writeImage(pdf::PaintWriter& writer, const QImage& image) {
    std::string colors;
    std::string alphas;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            for (const int value : {qRed(pixel), qGreen(pixel), qBlue(pixel)}) colors += static_cast<char>(value);
            alphas += static_cast<char>(qAlpha(pixel));
        }
    }
    const std::string common = "/Type/XObject/Subtype/Image/BitsPerComponent 8/Width " + std::to_string(image.width()) +
                               "/Height " + std::to_string(image.height());
    const std::uint32_t mask = writer.addContent(common + "/ColorSpace/DeviceGray", alphas);
    return writer.addContent(common + "/ColorSpace/DeviceRGB/SMask " + std::to_string(mask) + " 0 R", colors);
}

}  // namespace

/// Up to 256 glyphs: a font of the file.
class DrawnGlyphs final : public pdf::PaintResource {
public:
    static constexpr std::size_t most = 256;

    DrawnGlyphs(const QRawFont& font, std::shared_ptr<const FontFile> file) : font_(font), file_(std::move(file)) {}

    [[nodiscard]] std::uint32_t add(std::uint32_t glyph) {
        glyphs_.push_back(glyph);
        return static_cast<std::uint32_t>(glyphs_.size() - 1);
    }
    [[nodiscard]] std::size_t size() const noexcept { return glyphs_.size(); }
    [[nodiscard]] bool claim(std::uint32_t code, const QString& text) { return texts_.claim(code, text); }

    /// Thousandths of an em.
    [[nodiscard]] double advance(std::uint32_t glyph) const {
        const auto advances = font_.advancesForGlyphIndexes({glyph});
        return advances.isEmpty() ? 0 : std::round(advances.front().x() * scale() * 10) / 10;
    }

    [[nodiscard]] std::string_view category() const noexcept override { return "Font"; }
    [[nodiscard]] std::uint32_t write(pdf::PaintWriter& writer) const override;

private:
    [[nodiscard]] double scale() const { return 1000 / font_.pixelSize(); }
    [[nodiscard]] pdf::Rectangle placeOf(std::uint32_t glyph, const pdf::Rectangle& stated) const;
    [[nodiscard]] std::string shape(std::uint32_t glyph) const;
    [[nodiscard]] std::string procedure(pdf::PaintWriter& writer, std::uint32_t glyph, std::string& images) const;

    QRawFont font_;
    std::shared_ptr<const FontFile> file_;
    std::vector<std::uint32_t> glyphs_;  // by code
    GlyphTexts texts_;
};

std::uint32_t DrawnGlyphs::write(pdf::PaintWriter& writer) const {
    std::string procedures;
    std::string differences;
    std::string widths;
    std::string images;
    for (const std::uint32_t glyph : glyphs_) {
        const std::string name = "/g" + std::to_string(glyph);
        procedures += name + ' ' + std::to_string(writer.addContent({}, procedure(writer, glyph, images))) + " 0 R";
        differences += name;
        pdf::writeReal(widths, advance(glyph));
        widths += ' ';
    }
    const std::uint32_t toUnicode = writer.addContent({}, texts_.toUnicode(1));
    std::string box;
    pdf::writeRectangle(box, {0, -std::round(font_.descent() * scale()), 1000, std::round(font_.ascent() * scale())});
    return writer.sink().addObject(
        "<</Type/Font/Subtype/Type3/FontBBox" + box + "/FontMatrix[.001 0 0 .001 0 0]/FirstChar 0/LastChar " +
        std::to_string(glyphs_.size() - 1) + "/Widths[" + widths + "]/Encoding<</Type/Encoding/Differences[0" +
        differences + "]>>/CharProcs<<" + procedures + ">>/Resources<</XObject<<" + images + ">>>>/ToUnicode " +
        std::to_string(toUnicode) + " 0 R>>");
}

/// The layout takes pictures for smaller than the font's file says; they must fit the room that it gave them.
pdf::Rectangle DrawnGlyphs::placeOf(std::uint32_t glyph, const pdf::Rectangle& stated) const {
    const QRectF box = font_.boundingRect(glyph);
    if (!box.isEmpty()) {
        return {box.left() * scale(), -box.bottom() * scale(), box.right() * scale(), -box.top() * scale()};
    }
    const double shrink = std::min(1.0, advance(glyph) / std::max(stated.width(), 1.0));
    return {stated.left * shrink, stated.bottom * shrink, stated.right * shrink, stated.top * shrink};
}

/// The outline of a glyph, behind its advance.
std::string DrawnGlyphs::shape(std::uint32_t glyph) const {
    // Asked for the outline of a picture, Qt has nothing, and measures the font wrongly from then on.
    const QPainterPath path = file_->hasOutlines() ? font_.pathForGlyph(glyph) : QPainterPath();
    if (path.isEmpty()) return " 0 d0";
    const QRectF box = path.boundingRect();
    std::string text = " 0 ";
    for (const double value : {box.left(), -box.bottom(), box.right(), -box.top()}) {
        pdf::writeReal(text, std::round(value * scale()));
        text += ' ';
    }
    return text + "d1 " + operatorsOf(path, scale());
}

std::string DrawnGlyphs::procedure(pdf::PaintWriter& writer, std::uint32_t glyph, std::string& images) const {
    std::string text;
    pdf::writeReal(text, advance(glyph));
    const auto picture = file_->picture(glyph);
    const QImage pixels = picture ? QImage::fromData(picture->png, "PNG") : QImage();
    if (pixels.isNull()) return text + shape(glyph);
    text += " 0 d0";
    const std::uint32_t image = writeImage(writer, pixels.convertToFormat(QImage::Format_ARGB32));
    const std::string name = "/i" + std::to_string(image);
    if (images.find(name + ' ') == std::string::npos) images += name + ' ' + std::to_string(image) + " 0 R";
    const pdf::Rectangle place = placeOf(glyph, picture->place);
    text += " q ";
    for (const double value : {place.width(), 0.0, 0.0, place.height(), place.left, place.bottom}) {
        pdf::writeReal(text, value);
        text += ' ';
    }
    return text + "cm " + name + " Do Q";
}

DrawnFont::Use DrawnFont::use(std::uint32_t glyph, const QString& text) {
    const auto [at, isNew] = places_.try_emplace(glyph);
    if (isNew) {
        if (parts_.empty() || parts_.back()->size() == DrawnGlyphs::most) {
            parts_.push_back(std::make_shared<DrawnGlyphs>(font_, file_));
        }
        at->second = {parts_.size() - 1, parts_.back()->add(glyph)};
    }
    const auto& part = parts_[at->second.part];
    const std::uint32_t code = at->second.code;
    const bool shows = glyph != 0 && part->claim(code, text);
    return {part, std::string(1, static_cast<char>(code)), part->advance(glyph), shows};
}

}  // namespace quillon
