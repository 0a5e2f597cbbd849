#pragma once

#include "pdf/object/Characters.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace quillon::pdf {

/// Finds where a value ends without parsing it. Returns the position behind the value that starts at `position` (white
/// space and comments before it are passed over); a reference counts as one value. Nothing when the value is not closed
/// within the text, is closed by the wrong bracket, is nested too deeply, or when no value stands there.
[[nodiscard]] std::optional<std::size_t> skipValue(std::string_view text, std::size_t position) noexcept;

/// Behind the string that starts at `position` with `(`; nothing when it is not closed.
[[nodiscard]] std::optional<std::size_t> skipLiteralString(std::string_view text, std::size_t position) noexcept;

namespace detail {
[[nodiscard]] std::size_t skipComments(std::string_view text, std::size_t position) noexcept;
}

/// Behind white space and comments.
[[nodiscard]] inline std::size_t skipBlank(std::string_view text, std::size_t position) noexcept {
    while (position < text.size() && isWhiteSpace(text[position])) ++position;
    return position < text.size() && text[position] == '%' ? detail::skipComments(text, position) : position;
}

}  // namespace quillon::pdf
