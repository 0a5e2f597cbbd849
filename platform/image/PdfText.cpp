#include "platform/image/PdfText.h"

#include <array>
#include <charconv>
#include <string_view>

namespace quillon {

std::string pdfNumber(double value) {
    // Page measures have few digits; the longest double in fixed form has over three hundred.
    std::array<char, 400> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return {text.data(), end};
}

std::string pdfHexString(std::span<const char> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "<";
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4];
        text += digits[value & 0x0F];
    }
    return text + ">";
}

}  // namespace quillon
