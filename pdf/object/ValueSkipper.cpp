#include "pdf/object/ValueSkipper.h"

#include "pdf/object/BracketStack.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/StopFinder.h"
#include "pdf/object/StopMask.h"

#include <bit>
#include <cstdint>

namespace quillon::pdf {

namespace {

// Backslashes are not among them: in some strings every other character is escaped.
using StringStops = StopFinder<'(', ')'>;

/// Whether the character at `at` of a literal string, which is not its first, stands behind an odd number of
/// backslashes.
bool isEscaped(std::string_view text, std::size_t at) noexcept {
    std::size_t from = at;
    while (text[from - 1] == '\\') --from;  // no further than to the bracket that the string begins with
    return (at - from) % 2 != 0;
}

std::size_t skipRegular(std::string_view text, std::size_t position) noexcept {
    while (position < text.size() && isRegular(text[position])) ++position;
    return position;
}

/// Behind ` g R`, when that follows a number that ends at `position`.
std::size_t skipRestOfReference(std::string_view text, std::size_t position) noexcept {
    std::size_t at = position;
    skipWhiteSpace(text, at);
    if (at == position || !readUnsigned(text, at)) return position;
    const std::size_t afterGeneration = at;
    skipWhiteSpace(text, at);
    if (at == afterGeneration || at >= text.size() || text[at] != 'R') return position;
    ++at;
    return at == text.size() || !isRegular(text[at]) ? at : position;
}

/// Behind a value that has nothing inside; a bracket is not one.
std::optional<std::size_t> skipScalar(std::string_view text, std::size_t at) noexcept {
    switch (text[at]) {
        case '(':
            return skipLiteralString(text, at);
        case '<': {
            const std::size_t close = text.find('>', at);
            if (close == std::string_view::npos) return std::nullopt;
            return close + 1;
        }
        case '/':
            return skipRegular(text, at + 1);
        default: {
            const std::size_t end = skipRegular(text, at);
            if (end == at) return std::nullopt;
            return isDigit(text[at]) ? skipRestOfReference(text, end) : end;
        }
    }
}

using BracketStops = StopFinder<'(', '<', '>', '[', ']', '%'>;

/// Behind an array or dictionary. What stands between brackets, strings and comments is passed over unseen.
std::optional<std::size_t> skipBracketed(std::string_view text, std::size_t at) noexcept {
    BracketStack open;
    BracketStops stops(text);
    do {
        at = stops.find(at);
        if (at >= text.size()) return std::nullopt;
        const char c = text[at];
        const bool doubled = at + 1 < text.size() && text[at + 1] == c;
        if (c == '%') {
            at = skipBlank(text, at);
        } else if (c == '[' || (c == '<' && doubled)) {
            if (!open.push(c)) return std::nullopt;
            at += c == '[' ? 1U : 2U;
        } else if (c == ']' || (c == '>' && doubled)) {
            if (!open.pop(c == ']' ? '[' : '<')) return std::nullopt;
            at += c == ']' ? 1U : 2U;
        } else {
            const auto end = skipScalar(text, at);
            if (!end) return std::nullopt;
            at = *end;
        }
    } while (!open.empty());
    return at;
}

}  // namespace

std::size_t detail::skipComments(std::string_view text, std::size_t position) noexcept {
    Lexer lexer(text, position);
    lexer.skipWhiteSpaceAndComments();
    return lexer.position();
}

std::optional<std::size_t> skipLiteralString(std::string_view text, std::size_t position) noexcept {
    // Most are short, and nothing but their end is special in them.
    constexpr std::size_t shortString = 32;
    const std::size_t begin = position + 1;
    const std::uint64_t seen = StopMask<'(', ')'>::of(text.substr(begin, shortString));
    const std::size_t first = begin + static_cast<std::size_t>(std::countr_zero(seen));
    if (seen != 0 && text[first] == ')' && text[first - 1] != '\\') return first + 1;
    std::size_t depth = 1;
    StringStops stops(text);
    for (std::size_t at = stops.find(begin); at < text.size(); at = stops.find(at + 1)) {
        if (isEscaped(text, at)) continue;
        if (text[at] == '(') {
            ++depth;
        } else if (--depth == 0) {
            return at + 1;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> skipValue(std::string_view text, std::size_t position) noexcept {
    position = skipBlank(text, position);
    if (position >= text.size()) return std::nullopt;
    const bool bracket = text[position] == '[' || text.substr(position, 2) == "<<";
    return bracket ? skipBracketed(text, position) : skipScalar(text, position);
}

}  // namespace quillon::pdf
