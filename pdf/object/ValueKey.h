#pragma once

#include <string_view>

namespace quillon::pdf {

/// Whether `text` may have an entry `V` anywhere, even one whose key is written with an escape, without looking at it
/// closely: false only if it certainly has none.
[[nodiscard]] bool mayHaveValueKey(std::string_view text) noexcept;

}  // namespace quillon::pdf
