#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace quillon::pdf {

// Digests of several pieces of data, one behind the other.

/// 16 bytes.
[[nodiscard]] std::string md5(std::initializer_list<std::string_view> pieces);
/// 32 bytes.
[[nodiscard]] std::string sha256(std::initializer_list<std::string_view> pieces);
/// 48 bytes.
[[nodiscard]] std::string sha384(std::initializer_list<std::string_view> pieces);
/// 64 bytes.
[[nodiscard]] std::string sha512(std::initializer_list<std::string_view> pieces);

}  // namespace quillon::pdf
