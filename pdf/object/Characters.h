#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillon::pdf {

/// The character classes of ISO 32000-2, 7.2.3.
enum class CharacterClass : std::uint8_t { Regular, Delimiter, WhiteSpace };

inline constexpr auto characterClasses = [] {
    std::array<CharacterClass, 256> classes{};
    for (const char c : std::string_view("\0\t\n\f\r ", 6))
        classes[static_cast<unsigned char>(c)] = CharacterClass::WhiteSpace;
    for (const char c : std::string_view("()<>[]{}/%"))
        classes[static_cast<unsigned char>(c)] = CharacterClass::Delimiter;
    return classes;
}();

[[nodiscard]] constexpr CharacterClass classOf(char c) noexcept {
    return characterClasses[static_cast<unsigned char>(c)];
}
[[nodiscard]] constexpr bool isWhiteSpace(char c) noexcept {
    return classOf(c) == CharacterClass::WhiteSpace;
}
[[nodiscard]] constexpr bool isRegular(char c) noexcept {
    return classOf(c) == CharacterClass::Regular;
}
[[nodiscard]] constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

[[nodiscard]] constexpr bool isOctalDigit(char c) noexcept {
    return c >= '0' && c <= '7';
}

/// The value of a hexadecimal digit, -1 for any other character.
[[nodiscard]] constexpr int hexDigit(char c) noexcept {
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace quillon::pdf
