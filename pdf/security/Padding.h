#pragma once

#include "pdf/security/AesCbc.h"

#include <algorithm>
#include <string_view>

namespace quillon::pdf {

/// The bytes at the end of deciphered data, 0 to 16, that only fill its last block (RFC 2898, 6.1.1); 0 where it does
/// not end as it should.
[[nodiscard]] inline std::size_t paddingOf(std::string_view data) noexcept {
    if (data.empty()) return 0;
    const auto count = static_cast<std::size_t>(static_cast<unsigned char>(data.back()));
    if (count == 0 || count > std::min(aesBlock, data.size())) return 0;
    const std::string_view end = data.substr(data.size() - count);
    return std::ranges::count(end, data.back()) == static_cast<std::ptrdiff_t>(count) ? count : 0;
}

}  // namespace quillon::pdf
