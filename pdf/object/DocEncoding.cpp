#include "pdf/object/DocEncoding.h"

#include <algorithm>
#include <array>

namespace quillon::pdf {

namespace {

// Where PDFDocEncoding is not Latin-1; 0 where it has no character.
constexpr std::array<char16_t, 8> from18 = {0x02D8, 0x02C7, 0x02C6, 0x02D9, 0x02DD, 0x02DB, 0x02DA, 0x02DC};
constexpr std::array<char16_t, 33> from80 = {0x2022, 0x2020, 0x2021, 0x2026, 0x2014, 0x2013, 0x0192, 0x2044, 0x2039,
                                             0x203A, 0x2212, 0x2030, 0x201E, 0x201C, 0x201D, 0x2018, 0x2019, 0x201A,
                                             0x2122, 0xFB01, 0xFB02, 0x0141, 0x0152, 0x0160, 0x0178, 0x017D, 0x0131,
                                             0x0142, 0x0153, 0x0161, 0x017E, 0,      0x20AC};

}  // namespace

char16_t fromDocEncoding(unsigned char byte) noexcept {
    if (byte >= 0x18 && byte < 0x20) return from18[byte - 0x18U];
    if (byte >= 0x80 && byte <= 0xA0) return from80[byte - 0x80U];
    return byte;
}

int toDocEncoding(char16_t character) noexcept {
    if (const auto at = std::ranges::find(from18, character); at != from18.end()) {
        return 0x18 + static_cast<int>(at - from18.begin());
    }
    if (const auto at = std::ranges::find(from80, character); character != 0 && at != from80.end()) {
        return 0x80 + static_cast<int>(at - from80.begin());
    }
    const bool latin =
        (character >= 0x20 && character < 0x7F) || (character > 0xA0 && character <= 0xFF && character != 0xAD);
    const bool control = character == u'\t' || character == u'\n' || character == u'\r';
    return latin || control ? static_cast<int>(character) : -1;
}

}  // namespace quillon::pdf
