#pragma once

#include <span>
#include <string>

namespace quillon {

/// A real number as PDF text: the shortest that reads back as the same, never in exponent form and in no locale's way.
[[nodiscard]] std::string pdfNumber(double value);

/// A string object of any bytes, in hexadecimal form with its brackets.
[[nodiscard]] std::string pdfHexString(std::span<const char> bytes);

}  // namespace quillon
