#pragma once

#include "platform/text/DocumentFont.h"
#include "platform/text/FontFile.h"
#include "platform/text/GlyphTexts.h"

#include <cstdint>
#include <memory>
#include <set>

namespace quillon {

/// A font of which the glyphs that are used are embedded: a composite font whose codes are the glyphs' indexes (ISO
/// 32000-2, 9.7).
class EmbeddedFont final : public DocumentFont,
                           public pdf::PaintResource,
                           public std::enable_shared_from_this<EmbeddedFont> {
public:
    /// `file` is one that can be embedded.
    explicit EmbeddedFont(std::unique_ptr<const FontFile> file) : file_(std::move(file)) {}

    [[nodiscard]] Use use(std::uint32_t glyph, const QString& text) override;

    [[nodiscard]] std::string_view category() const noexcept override { return "Font"; }
    [[nodiscard]] std::uint32_t write(pdf::PaintWriter& writer) const override;

private:
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string widths() const;
    [[nodiscard]] std::uint32_t writeDescriptor(pdf::PaintWriter& writer, const std::string& name) const;

    std::unique_ptr<const FontFile> file_;
    std::set<std::uint32_t> glyphs_;
    GlyphTexts texts_;
};

}  // namespace quillon
