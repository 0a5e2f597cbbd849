#include "platform/text/GlyphTexts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace quillon {

namespace {

std::string hex(std::uint32_t value, unsigned digits) {
    std::array<char, 12> text{};
    const int length = std::snprintf(text.data(), text.size(), "%0*X", static_cast<int>(digits), value);
    return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

bool GlyphTexts::claim(std::uint32_t code, const QString& text) {
    if (text.isEmpty()) return false;
    return texts_.try_emplace(code, text).first->second == text;
}

std::string GlyphTexts::toUnicode(unsigned bytes) const {
    constexpr std::size_t mostInBlock = 100;
    std::string cmap =
        "/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)"
        "/Supplement 0>>def\n/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n1 begincodespacerange\n<" +
        hex(0, bytes * 2) + "><" + hex(bytes == 1 ? 0xFFU : 0xFFFFU, bytes * 2) + ">\nendcodespacerange\n";
    auto at = texts_.begin();
    for (std::size_t left = texts_.size(); left > 0;) {
        const std::size_t block = std::min(left, mostInBlock);
        left -= block;
        cmap += std::to_string(block) + " beginbfchar\n";
        for (std::size_t i = 0; i < block; ++i, ++at) {
            cmap += '<' + hex(at->first, bytes * 2) + "><";
            for (const QChar unit : at->second) cmap += hex(unit.unicode(), 4);
            cmap += ">\n";
        }
        cmap += "endbfchar\n";
    }
    return cmap + "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n";
}

}  // namespace quillon
