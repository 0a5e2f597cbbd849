#include "pdf/object/Object.h"

#include "pdf/object/Characters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace quillon::pdf {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

void writeHexByte(std::string& out, char c) {
    const auto byte = static_cast<unsigned char>(c);
    out += hexDigits[byte >> 4U];
    out += hexDigits[byte & 15U];
}

/// A value is kept apart from what was written before it where both are regular characters.
void separate(std::string& out) {
    if (!out.empty() && isRegular(out.back())) out += ' ';
}

struct Writer {
    std::string& out;

    void operator()(std::monostate) const {
        separate(out);
        out += "null";
    }
    void operator()(bool value) const {
        separate(out);
        out += value ? "true" : "false";
    }
    void operator()(std::int64_t value) const {
        separate(out);
        out += std::to_string(value);
    }
    void operator()(double value) const {
        separate(out);
        writeReal(out, value);
    }
    void operator()(const std::string& value) const { writeString(out, value); }
    void operator()(const Name& value) const { writeName(out, value.value); }
    void operator()(Reference value) const {
        separate(out);
        out += std::to_string(value.number) + ' ' + std::to_string(value.generation) + " R";
    }
    void operator()(const Array& array) const {
        out += '[';
        for (const Object& element : array) element.write(out);
        out += ']';
    }
    void operator()(const Dictionary& dictionary) const {
        out += "<<";
        for (const auto& [key, value] : dictionary.entries()) {
            writeName(out, key);
            value.write(out);
        }
        out += ">>";
    }
};

// What a character means for a string that is written: 0 stands for itself.
constexpr unsigned escaped = 1;
constexpr unsigned unprintable = 2;
constexpr auto stringTraits = [] {
    std::array<std::uint8_t, 256> traits{};
    for (std::size_t c = 0; c < traits.size(); ++c) traits[c] = c < ' ' || c > '~' ? unprintable : 0;
    for (const char c : std::string_view("()\\\r")) traits[static_cast<unsigned char>(c)] |= escaped;
    return traits;
}();

bool isMostlyUnprintable(std::string_view text) {
    const auto count = std::ranges::count_if(
        text, [](char c) { return (stringTraits[static_cast<unsigned char>(c)] & unprintable) != 0; });
    return static_cast<std::size_t>(count) * 4 > text.size();
}

void writeEscaped(std::string& out, std::string_view text) {
    out += '(';
    for (const char c : text) {
        if ((stringTraits[static_cast<unsigned char>(c)] & escaped) != 0) out += '\\';
        out += c == '\r' ? 'r' : c;
    }
    out += ')';
}

}  // namespace

const Object& Dictionary::operator[](std::string_view key) const noexcept {
    static const Object null;
    const auto found =
        std::find_if(entries_.rbegin(), entries_.rend(), [key](const auto& entry) { return entry.first == key; });
    return found == entries_.rend() ? null : found->second;
}

bool Dictionary::contains(std::string_view key) const noexcept {
    return std::ranges::any_of(entries_, [key](const auto& entry) { return entry.first == key; });
}

void Dictionary::append(std::string key, Object value) {
    entries_.emplace_back(std::move(key), std::move(value));
}

std::optional<std::int64_t> Object::integer() const noexcept {
    if (const auto* whole = std::get_if<std::int64_t>(&value_)) return *whole;
    constexpr double mostExact = 9e15;
    const auto* real = std::get_if<double>(&value_);
    if (!real || std::abs(*real) > mostExact || std::trunc(*real) != *real) return std::nullopt;
    return static_cast<std::int64_t>(*real);
}

std::optional<double> Object::number() const noexcept {
    if (const auto* whole = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*whole);
    if (const auto* real = std::get_if<double>(&value_)) return *real;
    return std::nullopt;
}

void Object::write(std::string& out) const {
    std::visit(Writer{out}, value_);
}

void writeName(std::string& out, std::string_view name) {
    out += '/';
    for (const char c : name) {
        if (isRegular(c) && c > ' ' && c < '\x7f' && c != '#') {
            out += c;
        } else if (c != '\0') {
            out += '#';
            writeHexByte(out, c);
        }
    }
}

void writeString(std::string& out, std::string_view text) {
    unsigned found = 0;
    for (const char c : text) found |= stringTraits[static_cast<unsigned char>(c)];
    if (found == 0) {
        out += '(';
        out += text;
        out += ')';
    } else if ((found & unprintable) != 0 && isMostlyUnprintable(text)) {
        out += '<';
        for (const char c : text) writeHexByte(out, c);
        out += '>';
    } else {
        writeEscaped(out, text);
    }
}

void writeReference(std::string& out, std::uint32_t number) {
    if (!out.empty() && isRegular(out.back())) out += ' ';
    if (number == 0) {
        out += "null";
        return;
    }
    constexpr std::string_view generation = " 0 R";
    std::array<char, 10 + generation.size()> text;
    char* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    std::memcpy(end, generation.data(), generation.size());
    out.append(text.data(), static_cast<std::size_t>(end - text.data()) + generation.size());
}

void writeReal(std::string& out, double value) {
    if (!std::isfinite(value)) value = 0;
    std::array<char, 400> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    out.append(digits.data(), result.ptr);
}

void writeRectangle(std::string& out, const Rectangle& rectangle) {
    out += '[';
    for (const double value : {rectangle.left, rectangle.bottom, rectangle.right, rectangle.top}) {
        if (out.back() != '[') out += ' ';
        writeReal(out, value);
    }
    out += ']';
}

}  // namespace quillon::pdf
