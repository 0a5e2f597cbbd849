#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

// The filters that are no compression worth the name (ISO 32000-2, 7.4.2, 7.4.3, 7.4.5) and LZW (7.4.4). Each decodes
// damaged data as far as it goes; the two that can grow give nothing beyond `limit` bytes.

[[nodiscard]] std::string decodeAsciiHex(std::string_view data);
[[nodiscard]] std::string decodeAscii85(std::string_view data);
[[nodiscard]] std::optional<std::string> decodeRunLength(std::string_view data, std::size_t limit);
/// `earlyChange` as in the DecodeParms entry: codes grow one code early.
[[nodiscard]] std::optional<std::string> decodeLzw(std::string_view data, bool earlyChange, std::size_t limit);

}  // namespace quillon::pdf
