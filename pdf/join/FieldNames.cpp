#include "pdf/join/FieldNames.h"

#include "pdf/object/DocEncoding.h"

namespace quillon::pdf {

namespace {

constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// The same for every encoding of the same text, as long as that is UTF-16 or PDFDocEncoding.
std::string comparable(std::string_view name) {
    if (name.starts_with(bigEndianMark) || name.starts_with(utf8Mark)) return std::string(name);
    std::string text(bigEndianMark);
    for (const char c : name) {
        const char16_t character = fromDocEncoding(static_cast<unsigned char>(c));
        text += static_cast<char>(character >> 8U);
        text += static_cast<char>(character & 0xFFU);
    }
    return text;
}

std::string numbered(std::string_view name, std::size_t number) {
    std::string result(name);
    for (const char c : "-" + std::to_string(number)) {
        if (name.starts_with(bigEndianMark)) result += '\0';
        result += c;
    }
    return result;
}

}  // namespace

std::string FieldNames::reserve(std::string_view name) {
    if (used_.insert(comparable(name)).second) return std::string(name);
    std::size_t& last = last_.try_emplace(comparable(name), 1).first->second;
    while (true) {
        std::string wanted = numbered(name, ++last);
        if (used_.insert(comparable(wanted)).second) return wanted;
    }
}

}  // namespace quillon::pdf
