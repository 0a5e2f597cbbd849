#include "pdf/object/ValueKey.h"

#include "pdf/object/Characters.h"

#include <cstddef>

namespace quillon::pdf {

namespace {

/// Whether `text` has a name that is written as `letter`, the letter of the key in one of the ways to write it.
bool hasName(std::string_view text, std::string_view letter) noexcept {
    // The letter is much rarer than the slash before it.
    for (std::size_t at = text.find(letter.front(), 1); at != std::string_view::npos;
         at = text.find(letter.front(), at + 1)) {
        const std::size_t end = at + letter.size();
        const bool ends = end >= text.size() || !isRegular(text[end]);
        if (ends && text[at - 1] == '/' && text.substr(at, letter.size()) == letter) return true;
    }
    return false;
}

}  // namespace

bool mayHaveValueKey(std::string_view text) noexcept {
    return hasName(text, "V") || hasName(text, "#56");
}

}  // namespace quillon::pdf
