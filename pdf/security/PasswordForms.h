#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

// A password is typed as text and used as bytes. Which bytes, the revision of the security handler says (ISO 32000-2,
// 7.6.4.3.2 and 7.6.4.3.3), but programs do not all do as they should, so there are several forms to try. The first is
// the one that the standard wants and that is written.

/// Up to revision 4: PDFDocEncoding; then UTF-8, which alone remains where that has not all the characters. `utf8` may
/// be any bytes.
[[nodiscard]] std::vector<std::string> legacyPasswordForms(std::string_view utf8);

/// From revision 5 on: UTF-8 normalised by SASLprep (RFC 4013), then UTF-8 as it was typed; at most 127 bytes each.
/// Text that SASLprep does not allow has the second form only.
[[nodiscard]] std::vector<std::string> passwordForms(std::string_view utf8);

}  // namespace quillon::pdf
