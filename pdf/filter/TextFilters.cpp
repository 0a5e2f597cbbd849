#include "pdf/filter/TextFilters.h"

#include "pdf/object/Characters.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace quillon::pdf {

std::string decodeAsciiHex(std::string_view data) {
    std::string out;
    int high = -1;
    for (const char c : data) {
        if (c == '>') break;
        const int digit = hexDigit(c);
        if (digit < 0) continue;
        if (high >= 0) out += static_cast<char>(high * 16 + digit);
        high = high >= 0 ? -1 : digit;
    }
    if (high >= 0) out += static_cast<char>(high * 16);
    return out;
}

std::string decodeAscii85(std::string_view data) {
    std::string out;
    std::uint32_t group = 0;
    int digits = 0;
    const auto flush = [&](int bytes) {
        for (int i = 0; i < bytes; ++i) out += static_cast<char>(group >> (24 - 8 * i));
        group = 0;
        digits = 0;
    };
    for (const char c : data) {
        if (c == '~') break;
        if (c == 'z' && digits == 0) {
            out.append(4, '\0');
        } else if (c >= '!' && c <= 'u') {
            group = group * 85 + static_cast<std::uint32_t>(c - '!');
            if (++digits == 5) flush(4);
        }
    }
    if (digits > 1) {
        const int bytes = digits - 1;
        for (; digits < 5; ++digits) group = group * 85 + 84;
        flush(bytes);
    }
    return out;
}

std::optional<std::string> decodeRunLength(std::string_view data, std::size_t limit) {
    std::string out;
    for (std::size_t at = 0; at < data.size();) {
        const auto length = static_cast<unsigned char>(data[at++]);
        if (length == 128) break;
        if (length < 128) {
            out += data.substr(std::min(at, data.size()), length + 1U);
            at += length + 1U;
        } else if (at < data.size()) {
            out.append(257U - length, data[at++]);
        }
        if (out.size() > limit) return std::nullopt;
    }
    return out;
}

std::optional<std::string> decodeLzw(std::string_view data, bool earlyChange, std::size_t limit) {
    constexpr unsigned clear = 256;
    constexpr unsigned end = 257;
    constexpr unsigned none = 4096;
    // Every code is a place of the output where its bytes stand already, and their number.
    struct Code {
        std::size_t at = 0;
        std::size_t length = 0;
    };
    std::array<Code, 4096> codes{};
    std::string out;
    unsigned next = end + 1;
    unsigned width = 9;
    unsigned previous = none;
    std::uint32_t bits = 0;
    unsigned held = 0;
    Code last;
    for (const char c : data) {
        bits = bits << 8U | static_cast<unsigned char>(c);
        held += 8;
        if (held < width) continue;
        held -= width;
        const unsigned code = (bits >> held) & ((1U << width) - 1);
        if (code == end) break;
        if (code == clear) {
            next = end + 1;
            width = 9;
            previous = none;
            continue;
        }
        if (code > next || (code == next && previous == none)) break;
        const std::size_t at = out.size();
        if (previous != none && next < codes.size()) codes[next++] = {last.at, last.length + 1};
        if (code < clear) {
            out += static_cast<char>(code);
        } else {
            // Byte by byte, because the newest code overlaps the bytes being written.
            const Code source = codes[code];
            if (source.length == 0) break;
            for (std::size_t i = 0; i < source.length; ++i) out += out[source.at + i];
        }
        last = {at, out.size() - at};
        previous = code;
        if (out.size() > limit) return std::nullopt;
        const unsigned reached = next + (earlyChange ? 1U : 0U);
        width = reached >= 2048 ? 12 : reached >= 1024 ? 11 : reached >= 512 ? 10 : 9;
    }
    return out;
}

}  // namespace quillon::pdf
