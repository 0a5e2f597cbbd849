#include "pdf/join/FieldNames.h"

#include "pdf/object/DocEncoding.h"

#include <algorithm>
#include <optional>

namespace quillon::pdf {

namespace {

constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

void append(std::string& utf16, char32_t unit) {
    utf16 += static_cast<char>(unit >> 8U & 0xFFU);
    utf16 += static_cast<char>(unit & 0xFFU);
}

/// The character at the start of `text`, which loses it; nothing when it is malformed.
std::optional<char32_t> takeCharacter(std::string_view& text) {
    const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || text.size() < length) return std::nullopt;
    char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) return std::nullopt;
        character = character << 6U | (byte(i) & 0x3FU);
    }
    text.remove_prefix(length);
    return character;
}

void appendUtf8(std::string& utf16, std::string_view text) {
    while (!text.empty()) {
        const auto character = takeCharacter(text);
        if (!character) {
            // What no sound name has, so that a malformed one is equal to none but itself.
            append(utf16, 0xDC00U + static_cast<unsigned char>(text.front()));
            text.remove_prefix(1);
        } else if (*character < 0x10000) {
            append(utf16, *character);
        } else {
            append(utf16, 0xD800U + ((*character - 0x10000U) >> 10U));
            append(utf16, 0xDC00U + ((*character - 0x10000U) & 0x3FFU));
        }
    }
}

}  // namespace

std::string FieldNames::comparable(std::string_view name) {
    if (name.starts_with(bigEndianMark)) return std::string(name);
    std::string text(bigEndianMark);
    if (name.starts_with(utf8Mark)) {
        appendUtf8(text, name.substr(utf8Mark.size()));
    } else {
        text.reserve(text.size() + 2 * name.size());
        for (const char c : name) append(text, fromDocEncoding(static_cast<unsigned char>(c)));
    }
    return text;
}

std::string FieldNames::ended(std::string_view name, std::string_view ending) {
    std::string result(name);
    for (const char c : ending) {
        if (name.starts_with(bigEndianMark)) result += '\0';
        result += c;
    }
    return result;
}

std::size_t FieldNames::firstLength(std::string_view name) {
    if (!name.starts_with(bigEndianMark)) return std::min(name.find('.'), name.size());
    for (std::size_t i = bigEndianMark.size(); i + 1 < name.size(); i += 2) {
        if (name[i] == '\0' && name[i + 1] == '.') return i;
    }
    return name.size();
}

std::string FieldNames::reserve(std::string_view name, const std::string& comparableName) {
    if (used_.insert(comparableName).second) return {};
    std::size_t& last = last_.try_emplace(comparableName, 1).first->second;
    while (true) {
        std::string ending = "-" + std::to_string(++last);
        if (used_.insert(comparable(ended(name, ending))).second) return ending;
    }
}

}  // namespace quillon::pdf
