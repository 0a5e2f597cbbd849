#include "pdf/object/DictionaryScanner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

#include <algorithm>

namespace quillon::pdf {

DictionaryScanner::DictionaryScanner(std::string_view text) noexcept : text_(text) {
    position_ = skipBlank(text_, 0);
    valid_ = text_.substr(position_, 2) == "<<";
    done_ = !valid_;
    position_ += 2;
}

bool DictionaryScanner::next(Entry& entry) noexcept {
    if (done_) return false;
    position_ = skipBlank(text_, position_);
    done_ = true;
    if (text_.substr(std::min(position_, text_.size()), 2) == ">>") {
        position_ += 2;
        return false;
    }
    valid_ = false;
    if (position_ >= text_.size() || text_[position_] != '/') return false;
    std::size_t keyEnd = position_ + 1;
    while (keyEnd < text_.size() && isRegular(text_[keyEnd])) ++keyEnd;
    const std::size_t valueBegin = skipBlank(text_, keyEnd);
    const auto valueEnd = skipValue(text_, valueBegin);
    if (!valueEnd) return false;
    entry.key = text_.substr(position_ + 1, keyEnd - position_ - 1);
    entry.value = text_.substr(valueBegin, *valueEnd - valueBegin);
    position_ = *valueEnd;
    valid_ = true;
    done_ = false;
    return true;
}

std::size_t skipDictionary(std::string_view text) noexcept {
    DictionaryScanner scanner(text);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
    }
    return scanner.valid() ? scanner.position() : 0;
}

std::string_view soundDictionary(std::string_view text, std::string& repaired) {
    if (const std::size_t end = skipDictionary(text); end != 0) return text.substr(0, end);
    const Object parsed = Parser(text).parse();
    if (!parsed.dictionary()) return {};
    repaired.clear();
    parsed.write(repaired);
    return repaired;
}

std::string decodedKey(std::string_view key) {
    std::string withSlash = "/";
    withSlash += key;
    return Lexer(withSlash).next().value;
}

bool detail::escapedKeyIs(std::string_view key, std::string_view name) {
    return key.find('#') != std::string_view::npos && decodedKey(key) == name;
}

std::string_view findValue(std::string_view text, std::string_view name) {
    std::string_view found;
    DictionaryScanner scanner(text);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        if (keyIs(entry.key, name)) found = entry.value;
    }
    return found;
}

}  // namespace quillon::pdf
