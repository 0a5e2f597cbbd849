#include "pdf/object/MayHaveKey.h"

#include "pdf/object/Characters.h"

#include <cstddef>

namespace quillon::pdf {

bool mayHaveKey(std::string_view text, std::string_view key) noexcept {
    // Nearly every object passes here, and the letters of a key are rarer than the slash before it.
    for (std::size_t at = text.find(key.front(), 1); at != std::string_view::npos;
         at = text.find(key.front(), at + 1)) {
        const std::size_t end = at + key.size();
        const bool isWhole = text.substr(at, key.size()) == key && (end == text.size() || !isRegular(text[end]));
        if (isWhole && text[at - 1] == '/') return true;
    }
    return false;
}

bool mayHaveValueKey(std::string_view text) noexcept {
    return mayHaveKey(text, "V") || mayHaveKey(text, "#56");
}

}  // namespace quillon::pdf
