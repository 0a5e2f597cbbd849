#include "pdf/object/Lexer.h"

#include "pdf/object/Characters.h"
#include "pdf/object/StopFinder.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace quillon::pdf {

namespace {

/// Reads a number as lenient readers do: signs may repeat, a sign inside ends the number. False when it is none.
bool readNumber(std::string_view text, Token& token) {
    std::size_t at = 0;
    bool negative = false;
    while (at < text.size() && (text[at] == '+' || text[at] == '-')) negative = text[at++] == '-';
    const std::size_t firstDigit = at;
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    std::int64_t whole = 0;
    double value = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        const int digit = text[at] - '0';
        value = value * 10 + digit;
        whole = whole > (most - digit) / 10 ? most : whole * 10 + digit;
    }
    std::size_t digits = at - firstDigit;
    token.kind = TokenKind::Integer;
    if (at < text.size() && text[at] == '.') {
        token.kind = TokenKind::Real;
        double place = 0.1;
        for (++at; at < text.size() && isDigit(text[at]); ++at, ++digits, place /= 10)
            value += (text[at] - '0') * place;
    }
    const bool endsWell = at == text.size() || text[at] == '-';
    if (!endsWell || (digits == 0 && token.kind == TokenKind::Integer)) return false;
    token.integer = negative ? -whole : whole;
    if (token.kind == TokenKind::Real) std::from_chars(text.data() + firstDigit, text.data() + at, value);
    token.real = negative ? -value : value;
    return true;
}

}  // namespace

void Lexer::skipWhiteSpaceAndComments() noexcept {
    while (position_ < text_.size()) {
        if (text_[position_] == '%') {
            while (position_ < text_.size() && text_[position_] != '\n' && text_[position_] != '\r') ++position_;
        } else if (isWhiteSpace(text_[position_])) {
            ++position_;
        } else {
            return;
        }
    }
}

Token Lexer::next() {
    skipWhiteSpaceAndComments();
    Token token;
    token.begin = position_;
    if (position_ >= text_.size()) return token;
    const char c = text_[position_];
    const bool doubled = position_ + 1 < text_.size() && text_[position_ + 1] == c;
    switch (c) {
        case '(':
            token.kind = TokenKind::String;
            readLiteralString(token.value);
            break;
        case '<':
            token.kind = doubled ? TokenKind::DictionaryOpen : TokenKind::String;
            if (doubled)
                position_ += 2;
            else
                readHexString(token.value);
            break;
        case '>':
            token.kind = doubled ? TokenKind::DictionaryClose : TokenKind::Keyword;
            position_ += doubled ? 2 : 1;
            break;
        case '[':
        case ']':
            token.kind = c == '[' ? TokenKind::ArrayOpen : TokenKind::ArrayClose;
            ++position_;
            break;
        case '/':
            token.kind = TokenKind::Name;
            readName(token.value);
            break;
        case ')':
        case '{':
        case '}':
            token.kind = TokenKind::Keyword;
            token.value = c;
            ++position_;
            break;
        default:
            readRegular(token);
    }
    return token;
}

void Lexer::readLiteralString(std::string& value) {
    int depth = 1;
    for (++position_; position_ < text_.size(); ++position_) {
        const char c = text_[position_];
        if (c == '\\') {
            readEscape(value);
            continue;
        }
        if (c == '(') ++depth;
        if (c == ')' && --depth == 0) {
            ++position_;
            return;
        }
        if (c == '\r') {
            if (position_ + 1 < text_.size() && text_[position_ + 1] == '\n') ++position_;
            value += '\n';
        } else {
            value += c;
        }
    }
    position_ = std::min(position_, text_.size());  // a backslash at the very end steps beyond it
}

void Lexer::readEscape(std::string& value) {
    if (++position_ >= text_.size()) return;
    const char c = text_[position_];
    if (isOctalDigit(c)) {
        unsigned code = 0;
        const std::size_t end = std::min(position_ + 3, text_.size());
        while (position_ < end && isOctalDigit(text_[position_])) {
            code = code * 8 + static_cast<unsigned>(text_[position_++] - '0');
        }
        --position_;
        value += static_cast<char>(code);
        return;
    }
    constexpr std::string_view letters = "nrtbf";
    constexpr std::string_view meanings = "\n\r\t\b\f";
    if (const auto at = letters.find(c); at != std::string_view::npos) {
        value += meanings[at];
    } else if (c == '\r') {
        if (position_ + 1 < text_.size() && text_[position_ + 1] == '\n') ++position_;
    } else if (c != '\n') {
        value += c;
    }
}

void Lexer::readHexString(std::string& value) {
    int high = -1;
    for (++position_; position_ < text_.size() && text_[position_] != '>'; ++position_) {
        const int digit = hexDigit(text_[position_]);
        if (digit < 0) continue;
        if (high < 0) {
            high = digit;
        } else {
            value += static_cast<char>(high * 16 + digit);
            high = -1;
        }
    }
    if (high >= 0) value += static_cast<char>(high * 16);
    if (position_ < text_.size()) ++position_;
}

void Lexer::readName(std::string& value) {
    for (++position_; position_ < text_.size() && isRegular(text_[position_]); ++position_) {
        const char c = text_[position_];
        if (c == '#' && position_ + 2 < text_.size()) {
            const int high = hexDigit(text_[position_ + 1]);
            const int low = hexDigit(text_[position_ + 2]);
            if (high >= 0 && low >= 0) {
                value += static_cast<char>(high * 16 + low);
                position_ += 2;
                continue;
            }
        }
        value += c;
    }
}

void Lexer::readRegular(Token& token) {
    while (position_ < text_.size() && isRegular(text_[position_])) ++position_;
    const std::string_view run = text_.substr(token.begin, position_ - token.begin);
    if (readNumber(run, token)) return;
    token.kind = TokenKind::Keyword;
    token.value = run;
}

std::optional<std::string_view> plainString(std::string_view value) noexcept {
    if (value.size() < 2 || value.front() != '(') return std::nullopt;
    const std::string_view text = value.substr(1, value.size() - 2);
    const bool isPlain = StopFinder<'\\', '(', '\r'>(text).find(0) == text.size();
    return isPlain ? std::optional(text) : std::nullopt;
}

}  // namespace quillon::pdf
