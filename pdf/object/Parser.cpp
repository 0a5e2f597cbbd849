#include "pdf/object/Parser.h"

#include <limits>
#include <utility>

namespace quillon::pdf {

Object Parser::parse() {
    return parseValue(lexer_.next(), 0);
}

Object Parser::parseValue(Token token, int depth) {
    switch (token.kind) {
        case TokenKind::Integer:
            return parseNumber(token);
        case TokenKind::Real:
            return token.real;
        case TokenKind::String:
            return std::move(token.value);
        case TokenKind::Name:
            return Name{std::move(token.value)};
        case TokenKind::ArrayOpen:
        case TokenKind::DictionaryOpen:
            if (depth == maximumDepth) {
                skipNested();
                return {};
            }
            return token.kind == TokenKind::ArrayOpen ? parseArray(depth + 1) : parseDictionary(depth + 1);
        case TokenKind::Keyword:
            if (token.value == "true" || token.value == "false") return token.value == "true";
            clean_ = clean_ && token.value == "null";
            return {};
        case TokenKind::End:
        case TokenKind::ArrayClose:
        case TokenKind::DictionaryClose:
            clean_ = false;
            return {};
    }
    return {};
}

Object Parser::parseNumber(const Token& token) {
    constexpr std::int64_t most = std::numeric_limits<std::uint32_t>::max();
    if (token.integer < 0 || token.integer > most) return token.integer;
    const std::size_t after = lexer_.position();
    const Token generation = lexer_.next();
    if (generation.kind == TokenKind::Integer && generation.integer >= 0 && generation.integer <= most) {
        if (const Token mark = lexer_.next(); mark.kind == TokenKind::Keyword && mark.value == "R") {
            return Reference{static_cast<std::uint32_t>(token.integer), static_cast<std::uint32_t>(generation.integer)};
        }
    }
    lexer_.seek(after);
    return token.integer;
}

bool Parser::endsObject(const Token& token) {
    const bool ends = token.kind == TokenKind::End ||
                      (token.kind == TokenKind::Keyword && (token.value == "endobj" || token.value == "stream" ||
                                                            token.value == "obj" || token.value == "endstream"));
    if (!ends) return false;
    clean_ = false;
    lexer_.seek(token.begin);
    return true;
}

Object Parser::parseArray(int depth) {
    Array array;
    for (Token token = lexer_.next(); token.kind != TokenKind::ArrayClose; token = lexer_.next()) {
        if (endsObject(token)) break;
        if (token.kind == TokenKind::DictionaryClose) {
            clean_ = false;
            lexer_.seek(token.begin);
            break;
        }
        array.push_back(parseValue(std::move(token), depth));
    }
    return array;
}

Object Parser::parseDictionary(int depth) {
    Dictionary dictionary;
    for (Token token = lexer_.next(); token.kind != TokenKind::DictionaryClose; token = lexer_.next()) {
        if (endsObject(token)) break;
        if (token.kind != TokenKind::Name) {
            clean_ = false;
            continue;
        }
        std::string key = std::move(token.value);
        token = lexer_.next();
        if (token.kind == TokenKind::DictionaryClose || endsObject(token)) {
            clean_ = false;
            break;
        }
        dictionary.append(std::move(key), parseValue(std::move(token), depth));
    }
    return dictionary;
}

void Parser::skipNested() {
    clean_ = false;
    for (std::size_t open = 1; open > 0;) {
        const Token token = lexer_.next();
        if (endsObject(token)) return;
        if (token.kind == TokenKind::ArrayOpen || token.kind == TokenKind::DictionaryOpen) ++open;
        if (token.kind == TokenKind::ArrayClose || token.kind == TokenKind::DictionaryClose) --open;
    }
}

std::optional<Reference> readReference(std::string_view text, std::size_t& position) noexcept {
    const auto number = readUnsigned(text, position);
    const std::size_t afterNumber = position;
    skipWhiteSpace(text, position);
    if (position == afterNumber) return std::nullopt;
    const auto generation = readUnsigned(text, position);
    const std::size_t afterGeneration = position;
    skipWhiteSpace(text, position);
    if (position == afterGeneration || position >= text.size() || text[position] != 'R') return std::nullopt;
    ++position;
    if (position < text.size() && isRegular(text[position])) return std::nullopt;
    if (!number || !generation || *number > UINT32_MAX || *generation > UINT32_MAX) return std::nullopt;
    return Reference{static_cast<std::uint32_t>(*number), static_cast<std::uint32_t>(*generation)};
}

std::optional<std::vector<Reference>> plainReferences(std::string_view array) {
    if (!array.starts_with('[')) return std::nullopt;
    std::vector<Reference> references;
    for (std::size_t at = 1;;) {
        skipWhiteSpace(array, at);
        if (at < array.size() && array[at] == ']') return references;
        const auto reference = readReference(array, at);
        if (!reference) return std::nullopt;
        references.push_back(*reference);
    }
}

std::optional<Reference> plainReference(std::string_view value) noexcept {
    std::size_t at = 0;
    const auto reference = readReference(value, at);
    return at == value.size() ? reference : std::nullopt;
}

}  // namespace quillon::pdf
