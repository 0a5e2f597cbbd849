#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace quillon::pdf {

/// Fills `bytes` with random bytes of the system, fit for keys. Throws std::system_error where the system has none.
void fillWithRandom(std::span<char> bytes);
[[nodiscard]] std::string randomBytes(std::size_t count);

}  // namespace quillon::pdf
