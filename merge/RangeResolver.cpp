#include "merge/RangeResolver.h"

#include "merge/LeadingInteger.h"

#include <algorithm>
#include <limits>

namespace quillon {
namespace {

/// A page number that counts from 1, counted from 0. The smallest number stays as it is instead of overflowing.
std::int32_t counted(std::int32_t number) {
    return number == std::numeric_limits<std::int32_t>::min() ? number : number - 1;
}

}  // namespace

RangeResolver::RangeResolver(const QString& string, std::int32_t maxValue)
    : cache_(string.isNull() ? QStringList() : string.split(QLatin1Char(','))),
      divider_{QChar(u'-')},
      max_(static_cast<std::int32_t>(cache_.size())),
      maxValue_(counted(maxValue)) {}

bool RangeResolver::next() {
    do {
        if (index_ < max_) ++index_;
        if (index_ >= max_) return false;
    } while (part().isEmpty());
    return true;
}

bool RangeResolver::isRange() {
    const QString text = part();
    const auto* at = std::find_if(text.begin(), text.end(), [this](QChar c) { return divider_.contains(c); });
    if (at == text.end()) return false;
    const auto position = at - text.begin();
    cache_start_ = counted(leadingInteger(QStringView(text).left(position)));
    cache_end_ = counted(leadingInteger(QStringView(text).mid(position + 1)));
    return true;
}

std::int32_t RangeResolver::getStart() const {
    return clamped(cache_start_);
}

std::int32_t RangeResolver::getEnd() const {
    return clamped(cache_end_);
}

std::int32_t RangeResolver::getValue() const {
    return std::min(counted(leadingInteger(part())), maxValue_);
}

/// Empty before the first and behind the last part.
QString RangeResolver::part() const {
    return cache_.value(index_);
}

std::int32_t RangeResolver::clamped(std::int32_t index) const noexcept {
    return index < 0 ? 0 : std::min(index, maxValue_);
}

}  // namespace quillon
