#pragma once

#include <string_view>

namespace quillon::pdf {

/// Whether what follows a content stream (ISO 32000-2, 7.8.2) is painted undisturbed by it, once `q` and `Q` stand
/// around it: it restores the graphics state exactly as often as it saves it and never before that, ends its text
/// objects and marked content, and breaks off nothing in the middle. In doubt the answer is no.
[[nodiscard]] bool isBalanced(std::string_view content) noexcept;

}  // namespace quillon::pdf
