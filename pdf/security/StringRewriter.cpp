#include "pdf/security/StringRewriter.h"

#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

#include <optional>

namespace quillon::pdf {

namespace {

std::optional<std::size_t> endOfString(std::string_view text, std::size_t at) {
    if (text[at] == '(') return skipLiteralString(text, at);
    const std::size_t close = text.find('>', at);
    return close == std::string_view::npos ? std::nullopt : std::optional(close + 1);
}

/// False when a string is not closed.
bool rewriteInPlace(std::string_view value, const StringChange& change, std::string& out) {
    std::size_t copied = 0;
    for (std::size_t at = value.find_first_of("(<%"); at < value.size(); at = value.find_first_of("(<%", at)) {
        if (value[at] == '%') {
            at = skipBlank(value, at);
        } else if (value.substr(at, 2) == "<<") {
            at += 2;
        } else {
            const auto end = endOfString(value, at);
            if (!end) return false;
            out += value.substr(copied, at - copied);
            writeString(out, change(Lexer(value, at).next().value));
            at = copied = *end;
        }
    }
    out += value.substr(copied);
    return true;
}

Object changed(const Object& object, const StringChange& change) {
    if (object.string()) return change(*object.string());
    if (const Array* array = object.array()) {
        Array result;
        result.reserve(array->size());
        for (const Object& element : *array) result.push_back(changed(element, change));
        return result;
    }
    if (const Dictionary* dictionary = object.dictionary()) {
        const bool isSignature = dictionary->contains("ByteRange");
        Dictionary result;
        for (const auto& [key, value] : dictionary->entries()) {
            result.append(key, isSignature && key == "Contents" ? value : changed(value, change));
        }
        return result;
    }
    return object;
}

}  // namespace

bool mayHoldString(std::string_view text) noexcept {
    for (std::size_t at = text.find_first_of("(<"); at < text.size(); at = text.find_first_of("(<", at + 2)) {
        if (text.substr(at, 2) != "<<") return true;
    }
    return false;
}

void rewriteStrings(std::string_view value, const StringChange& change, std::string& out) {
    const std::size_t before = out.size();
    const bool plain = skipValue(value, 0).has_value() && value.find("/ByteRange") == std::string_view::npos;
    if (plain && rewriteInPlace(value, change, out)) return;
    out.resize(before);
    changed(Parser(value).parse(), change).write(out);
}

}  // namespace quillon::pdf
