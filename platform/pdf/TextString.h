#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace quillon {

/// The bytes of a PDF text string (ISO 32000-2, 7.9.2.2): PDFDocEncoding where that holds all of `text`, otherwise
/// UTF-16BE with its mark.
[[nodiscard]] std::string toTextString(const QString& text);

/// The text of a PDF text string in PDFDocEncoding, UTF-16 of either byte order, or UTF-8, told apart by their marks.
[[nodiscard]] QString fromTextString(std::string_view bytes);

}  // namespace quillon
