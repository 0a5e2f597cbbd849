#pragma once

#include "pdf/io/InputFile.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillon {

/// The `length` bytes from `offset`; nothing when the file does not have them all, or has changed. Memory is taken only
/// for what lies within the file's size, however large a `length` a damaged header claims.
[[nodiscard]] inline std::optional<std::vector<char>> readExactly(pdf::InputFile& file, std::uint64_t offset,
                                                                  std::uint64_t length) {
    if (offset > file.size() || length > file.size() - offset) return std::nullopt;
    std::vector<char> bytes(static_cast<std::size_t>(length));
    if (file.readAt(offset, bytes) != bytes.size()) return std::nullopt;
    return bytes;
}

}  // namespace quillon
