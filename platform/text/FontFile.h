#pragma once

#include "pdf/Geometry.h"

#include <QByteArray>
#include <QRawFont>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>

struct hb_face_t;
struct hb_font_t;

namespace quillon {

/// The file of a font as far as embedding it asks for. Lengths are in thousandths of an em.
class FontFile {
public:
    explicit FontFile(const QRawFont& font);
    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;
    ~FontFile();

    /// Whether glyphs of it can and may be embedded: it has outlines of a kind that PDF knows, and its maker does not
    /// forbid it. The restrictions that a font states (OpenType `fsType`) are honoured where they rule out a subset in
    /// a file that everybody may read: restricted licence, no subsetting, bitmaps only.
    [[nodiscard]] bool isEmbeddable() const noexcept { return embeddable_; }
    /// PostScript outlines; otherwise TrueType.
    [[nodiscard]] bool hasPostScriptOutlines() const noexcept { return postScript_; }

    /// False for a font of pictures alone.
    [[nodiscard]] bool hasOutlines() const noexcept { return outlines_; }

    [[nodiscard]] std::string postScriptName() const;
    [[nodiscard]] double advance(std::uint32_t glyph) const;
    [[nodiscard]] double ascent() const;
    /// Negative.
    [[nodiscard]] double descent() const;
    [[nodiscard]] pdf::Rectangle boundingBox() const;

    /// Where a glyph's own picture lies, seen from its origin, and the PNG file of it; nothing when it has none.
    struct Picture {
        pdf::Rectangle place;
        QByteArray png;
    };
    [[nodiscard]] std::optional<Picture> picture(std::uint32_t glyph) const;

    /// The font program with these glyphs alone, under their old indexes: a TrueType file, or a bare CFF font. Nothing
    /// when the file is damaged.
    [[nodiscard]] std::optional<std::string> subset(const std::set<std::uint32_t>& glyphs) const;

private:
    [[nodiscard]] bool mayBeEmbedded() const;

    QRawFont font_;
    hb_face_t* face_;
    hb_font_t* hbFont_;
    bool postScript_ = false;
    bool outlines_ = true;
    bool embeddable_ = false;
};

}  // namespace quillon
