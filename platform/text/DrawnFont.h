#pragma once

#include "platform/text/DocumentFont.h"
#include "platform/text/FontFile.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon {

class DrawnGlyphs;

/// A font that cannot or may not be embedded. Its glyphs are drawn one by one, as shapes, or as pictures where it has
/// no shapes, as fonts of coloured pictures do (ISO 32000-2, 9.6.4). Its text can be searched like any other.
class DrawnFont final : public DocumentFont {
public:
    explicit DrawnFont(std::shared_ptr<const FontFile> file) : file_(std::move(file)) {}

    [[nodiscard]] Use use(std::uint32_t glyph, const QString& text) override;

private:
    struct Place {
        std::size_t part;
        std::uint32_t code;
    };

    std::shared_ptr<const FontFile> file_;
    std::unordered_map<std::uint32_t, Place> places_;
    std::vector<std::shared_ptr<DrawnGlyphs>> parts_;  // such a font holds 256 glyphs
};

}  // namespace quillon
