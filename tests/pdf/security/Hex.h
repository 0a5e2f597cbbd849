#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// The bytes that a hexadecimal text stands for.
[[nodiscard]] inline std::string fromHex(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

}  // namespace quillon::pdf
