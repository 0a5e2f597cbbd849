#pragma once

#include <QStringView>

#include <cstdint>

namespace quillon {

/// The integer with which `text` begins: white space is skipped, a sign may follow, then the digits 0 to 9 count, and
/// the rest is ignored. 0 when there are no digits there; values outside the 32-bit range become its nearest end.
[[nodiscard]] std::int32_t leadingInteger(QStringView text);

}  // namespace quillon
