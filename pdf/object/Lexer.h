#pragma once

#include "pdf/object/Characters.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

enum class TokenKind {
    End,
    Integer,
    Real,
    String,  ///< literal or hexadecimal, `value` decoded
    Name,    ///< `value` decoded, without the slash
    ArrayOpen,
    ArrayClose,
    DictionaryOpen,
    DictionaryClose,
    Keyword,  ///< any other run of regular characters, or a stray delimiter
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t begin = 0;     ///< where the token starts in the text
    std::int64_t integer = 0;  ///< Integer; saturated
    double real = 0;           ///< Integer and Real
    std::string value;         ///< String, Name, Keyword
};

/// Splits PDF text into the tokens of ISO 32000-2, 7.2 and 7.3. Total: any bytes give some tokens, and End for ever
/// after the last. A string or name that the text breaks off is taken as far as it goes.
class Lexer {
public:
    explicit Lexer(std::string_view text, std::size_t position = 0) noexcept : text_(text), position_(position) {}

    [[nodiscard]] Token next();
    /// Behind the last token.
    [[nodiscard]] std::size_t position() const noexcept { return position_; }
    void seek(std::size_t position) noexcept { position_ = position; }
    void skipWhiteSpaceAndComments() noexcept;

private:
    void readLiteralString(std::string& value);
    void readEscape(std::string& value);
    void readHexString(std::string& value);
    void readName(std::string& value);
    void readRegular(Token& token);

    std::string_view text_;
    std::size_t position_;
};

/// Reads an unsigned decimal number at `position`, moving it behind the digits. Nothing when there is no digit or the
/// value does not fit.
[[nodiscard]] inline std::optional<std::uint64_t> readUnsigned(std::string_view text, std::size_t& position) noexcept {
    constexpr std::size_t mostDigits = 19;
    const std::size_t begin = position;
    const std::size_t end = std::min(text.size(), begin + mostDigits);
    std::uint64_t value = 0;
    while (position < end && isDigit(text[position])) {
        value = value * 10 + static_cast<std::uint64_t>(text[position++] - '0');
    }
    const bool goesOn = position - begin == mostDigits && position < text.size() && isDigit(text[position]);
    if (position == begin || goesOn) return std::nullopt;
    return value;
}

/// The text of a literal string (`value` is all of it, with its brackets) that is written without any escape; nothing
/// for any other value.
[[nodiscard]] std::optional<std::string_view> plainString(std::string_view value) noexcept;

/// Moves `position` over white space.
inline void skipWhiteSpace(std::string_view text, std::size_t& position) noexcept {
    while (position < text.size() && isWhiteSpace(text[position])) ++position;
}

}  // namespace quillon::pdf
