#pragma once

#include "platform/text/FontFile.h"

#include <QByteArray>
#include <QRawFont>

#include <cstdint>
#include <unordered_map>

struct hb_blob_t;
struct hb_face_t;
struct hb_font_t;

namespace quillon {

/// Reads the file of one of Qt's fonts with HarfBuzz, and with Qt what HarfBuzz cannot read.
class HarfBuzzFontFile final : public FontFile {
public:
    explicit HarfBuzzFontFile(const QRawFont& font);
    ~HarfBuzzFontFile() override;

    [[nodiscard]] bool isEmbeddable() const override { return embeddable_; }
    [[nodiscard]] bool hasPostScriptOutlines() const override { return postScript_; }

    [[nodiscard]] std::string postScriptName() const override;
    [[nodiscard]] double advance(std::uint32_t glyph) const override;
    [[nodiscard]] double ascent() const override;
    [[nodiscard]] double descent() const override;
    [[nodiscard]] pdf::Rectangle boundingBox() const override;
    [[nodiscard]] std::optional<std::string> subset(const std::set<std::uint32_t>& glyphs) const override;

    [[nodiscard]] double drawnAdvance(std::uint32_t glyph) const override;
    [[nodiscard]] double drawnAscent() const override;
    [[nodiscard]] double drawnDescent() const override;
    [[nodiscard]] Outline outline(std::uint32_t glyph) const override;
    [[nodiscard]] std::optional<Picture> picture(std::uint32_t glyph) const override;

private:
    static hb_blob_t* tableOf(hb_face_t* face, std::uint32_t tag, void* self);
    [[nodiscard]] pdf::Rectangle placeOf(std::uint32_t glyph, const pdf::Rectangle& stated) const;
    [[nodiscard]] bool mayBeEmbedded() const;
    /// Thousandths of an em in one of Qt's units.
    [[nodiscard]] double scale() const { return 1000 / font_.pixelSize(); }

    QRawFont font_;
    // By tag. Kept as long as the face, since HarfBuzz goes on reading in tables that it has let go of.
    std::unordered_map<std::uint32_t, QByteArray> tables_;
    hb_face_t* face_;
    hb_font_t* hbFont_;
    bool postScript_ = false;
    bool outlines_ = true;  // false: it is one of pictures alone
    bool embeddable_ = false;
};

}  // namespace quillon
