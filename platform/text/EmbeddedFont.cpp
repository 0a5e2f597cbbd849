#include "platform/text/EmbeddedFont.h"

#include "pdf/object/Object.h"
#include "pdf/write/PaintWriter.h"

#include <string>

namespace quillon {

EmbeddedFont::Use EmbeddedFont::use(std::uint32_t glyph, const QString& text) {
    glyphs_.insert(glyph);
    const std::string code{static_cast<char>(glyph >> 8U), static_cast<char>(glyph & 0xFFU)};
    // Glyph 0 stands for every character that no font has.
    const bool shows = glyph != 0 && texts_.claim(glyph, text);
    return {shared_from_this(), code, file_->advance(glyph), shows};
}

std::uint32_t EmbeddedFont::write(pdf::PaintWriter& writer) const {
    const std::string fontName = name();
    const std::uint32_t descriptor = writeDescriptor(writer, fontName);
    std::string descendant = "<</Type/Font/Subtype/";
    descendant += file_->hasPostScriptOutlines() ? "CIDFontType0" : "CIDFontType2/CIDToGIDMap/Identity";
    descendant += "/BaseFont";
    pdf::writeName(descendant, fontName);
    descendant += "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor " +
                  std::to_string(descriptor) + " 0 R/DW 0/W[" + widths() + "]>>";
    const std::uint32_t descendantNumber = writer.sink().addObject(descendant);
    const std::uint32_t toUnicode = writer.addContent({}, texts_.toUnicode(2));
    std::string font = "<</Type/Font/Subtype/Type0/BaseFont";
    pdf::writeName(font, fontName);
    font += "/Encoding/Identity-H/DescendantFonts[" + std::to_string(descendantNumber) + " 0 R]/ToUnicode " +
            std::to_string(toUnicode) + " 0 R>>";
    return writer.sink().addObject(font);
}

/// The name of a subset begins with six letters that tell it from other subsets (9.9.2): made of the glyphs, so that
/// the same text gives the same file.
std::string EmbeddedFont::name() const {
    std::uint64_t hash = 14695981039346656037U;
    for (const std::uint32_t glyph : glyphs_) hash = (hash ^ glyph) * 1099511628211U;
    std::string tag;
    for (int i = 0; i < 6; ++i, hash /= 26) tag += static_cast<char>('A' + hash % 26);
    return tag + '+' + file_->postScriptName();
}

std::string EmbeddedFont::widths() const {
    std::string text;
    for (const std::uint32_t glyph : glyphs_) {
        text += std::to_string(glyph) + '[';
        pdf::writeReal(text, file_->advance(glyph));
        text += ']';
    }
    return text;
}

std::uint32_t EmbeddedFont::writeDescriptor(pdf::PaintWriter& writer, const std::string& name) const {
    std::string descriptor = "<</Type/FontDescriptor/FontName";
    pdf::writeName(descriptor, name);
    // The flag says that the glyphs are found without a standard encoding. The stem's width is not known; it is only a
    // hint for a substitute, which is never needed.
    descriptor += "/Flags 4/ItalicAngle 0/StemV 80/Ascent ";
    pdf::writeReal(descriptor, file_->ascent());
    descriptor += "/Descent ";
    pdf::writeReal(descriptor, file_->descent());
    descriptor += "/CapHeight ";
    pdf::writeReal(descriptor, file_->ascent());
    descriptor += "/FontBBox";
    pdf::writeRectangle(descriptor, file_->boundingBox());
    if (const auto program = file_->subset(glyphs_)) {
        const bool postScript = file_->hasPostScriptOutlines();
        const std::string entries =
            postScript ? "/Subtype/CIDFontType0C" : "/Length1 " + std::to_string(program->size());
        descriptor += postScript ? "/FontFile3 " : "/FontFile2 ";
        descriptor += std::to_string(writer.addContent(entries, *program)) + " 0 R";
    }
    return writer.sink().addObject(descriptor + ">>");
}

}  // namespace quillon
