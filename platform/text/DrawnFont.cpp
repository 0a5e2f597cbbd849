#include "platform/text/DrawnFont.h"

#include "pdf/object/Object.h"
#include "pdf/write/PaintWriter.h"
#include "platform/text/GlyphTexts.h"

#include <cmath>
#include <string>
#include <utility>

namespace quillon {

namespace {

std::string operatorsOf(const FontFile::Outline& outline) {
    std::string out;
    const auto appendPoints = [&out](const FontFile::PathStep& step, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            for (const double value : {step.points[i].x, step.points[i].y}) {
                pdf::writeReal(out, std::round(value * 10) / 10);
                out += ' ';
            }
        }
    };
    for (const FontFile::PathStep& step : outline.steps) {
        switch (step.kind) {
            case FontFile::PathStep::Kind::Move:
                if (!out.empty()) out += "h ";
                appendPoints(step, 1);
                out += "m ";
                break;
            case FontFile::PathStep::Kind::Line:
                appendPoints(step, 1);
                out += "l ";
                break;
            case FontFile::PathStep::Kind::Curve:
                appendPoints(step, 3);
                out += "c ";
                break;
        }
    }
    return out + (outline.isEvenOdd ? "f*" : "f");
}

std::uint32_t writeImage(pdf::PaintWriter& writer, const FontFile::Picture& picture) {
    const std::string common = "/Type/XObject/Subtype/Image/BitsPerComponent 8/Width " + std::to_string(picture.width) +
                               "/Height " + std::to_string(picture.height);
    const std::uint32_t mask = writer.addContent(common + "/ColorSpace/DeviceGray", picture.alphas);
    return writer.addContent(common + "/ColorSpace/DeviceRGB/SMask " + std::to_string(mask) + " 0 R", picture.colors);
}

}  // namespace

/// Up to 256 glyphs: a font of the file.
class DrawnGlyphs final : public pdf::PaintResource {
public:
    static constexpr std::size_t most = 256;

    explicit DrawnGlyphs(std::shared_ptr<const FontFile> file) : file_(std::move(file)) {}

    [[nodiscard]] std::uint32_t add(std::uint32_t glyph) {
        glyphs_.push_back(glyph);
        return static_cast<std::uint32_t>(glyphs_.size() - 1);
    }
    [[nodiscard]] std::size_t size() const noexcept { return glyphs_.size(); }
    [[nodiscard]] bool claim(std::uint32_t code, const QString& text) { return texts_.claim(code, text); }

    /// Thousandths of an em.
    [[nodiscard]] double advance(std::uint32_t glyph) const { return std::round(file_->drawnAdvance(glyph) * 10) / 10; }

    [[nodiscard]] std::string_view category() const noexcept override { return "Font"; }
    [[nodiscard]] std::uint32_t write(pdf::PaintWriter& writer) const override;

private:
    [[nodiscard]] std::string procedure(pdf::PaintWriter& writer, std::uint32_t glyph, std::string& images) const;

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
    pdf::writeRectangle(box, {0, std::round(file_->drawnDescent()), 1000, std::round(file_->drawnAscent())});
    return writer.sink().addObject(
        "<</Type/Font/Subtype/Type3/FontBBox" + box + "/FontMatrix[.001 0 0 .001 0 0]/FirstChar 0/LastChar " +
        std::to_string(glyphs_.size() - 1) + "/Widths[" + widths + "]/Encoding<</Type/Encoding/Differences[0" +
        differences + "]>>/CharProcs<<" + procedures + ">>/Resources<</XObject<<" + images + ">>>>/ToUnicode " +
        std::to_string(toUnicode) + " 0 R>>");
}

std::string DrawnGlyphs::procedure(pdf::PaintWriter& writer, std::uint32_t glyph, std::string& images) const {
    std::string text;
    pdf::writeReal(text, advance(glyph));
    const FontFile::Outline outline = file_->outline(glyph);
    if (!outline.steps.empty()) {
        const pdf::Rectangle& box = outline.box;
        text += " 0 ";
        for (const double value : {box.left, box.bottom, box.right, box.top}) {
            pdf::writeReal(text, std::round(value));
            text += ' ';
        }
        return text + "d1 " + operatorsOf(outline);
    }
    text += " 0 d0";
    const auto picture = file_->picture(glyph);
    if (!picture) return text;
    const std::uint32_t image = writeImage(writer, *picture);
    const std::string name = "/i" + std::to_string(image);
    if (images.find(name + ' ') == std::string::npos) images += name + ' ' + std::to_string(image) + " 0 R";
    const pdf::Rectangle& place = picture->place;
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
            parts_.push_back(std::make_shared<DrawnGlyphs>(file_));
        }
        at->second = {parts_.size() - 1, parts_.back()->add(glyph)};
    }
    const auto& part = parts_[at->second.part];
    const std::uint32_t code = at->second.code;
    const bool shows = glyph != 0 && part->claim(code, text);
    return {part, std::string(1, static_cast<char>(code)), part->advance(glyph), shows};
}

}  // namespace quillon
