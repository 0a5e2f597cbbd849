#pragma once

namespace quillon::pdf {

// PDFDocEncoding (ISO 32000-2, D.2), which has a byte for each of its characters.

/// The character of a byte; 0 where there is none.
[[nodiscard]] char16_t fromDocEncoding(unsigned char byte) noexcept;
/// The byte of a character; -1 where there is none.
[[nodiscard]] int toDocEncoding(char16_t character) noexcept;

}  // namespace quillon::pdf
