#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Gives the bytes of a string for those that stand in the text.
using StringChange = std::function<std::string(std::string_view)>;

/// Whether there may be a string in `text`. Quick.
[[nodiscard]] bool mayHoldString(std::string_view text) noexcept;

/// Appends `value`, the text of one value, with every string in it changed; all else stays as it is written. The value
/// of `Contents` in a signature (ISO 32000-2, 12.8.1), which is never enciphered, stays too. What is malformed comes
/// out well-formed.
void rewriteStrings(std::string_view value, const StringChange& change, std::string& out);

}  // namespace quillon::pdf
