#pragma once

#include <string_view>

namespace quillon::pdf {

/// Whether `text`, of one object or several, may have an entry `key`, without looking at it closely: false if it
/// certainly has none that is written without escapes.
[[nodiscard]] bool mayHaveKey(std::string_view text, std::string_view key) noexcept;

/// The same for the key `V`, even written with an escape.
[[nodiscard]] bool mayHaveValueKey(std::string_view text) noexcept;

}  // namespace quillon::pdf
