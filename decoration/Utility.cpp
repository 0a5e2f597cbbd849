#include "decoration/Utility.h"

namespace quillon {

void Utility::setPageNumberBegin(std::int32_t begin, std::int32_t Offset) {
    begin_ = begin;
    offset_ = Offset;
    timeOfOffset_ = 0;
}

QString Utility::pageNumberString() {
    // Unsigned arithmetic wraps as the numbers have to, where signed overflow would be undefined.
    const auto count = static_cast<std::uint32_t>(timeOfOffset_);
    const std::uint32_t number = static_cast<std::uint32_t>(begin_) + static_cast<std::uint32_t>(offset_) * count;
    timeOfOffset_ = static_cast<std::int32_t>(count + 1U);
    return pageNumberPrefixString_ + QLatin1Char(' ') + QString::number(static_cast<std::int32_t>(number));
}

}  // namespace quillon
