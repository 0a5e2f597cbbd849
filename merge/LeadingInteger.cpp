#include "merge/LeadingInteger.h"

#include <QChar>

#include <algorithm>
#include <limits>

namespace quillon {

std::int32_t leadingInteger(QStringView text) {
    const auto* at = std::find_if_not(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
    const bool negative = at != text.end() && *at == u'-';
    if (at != text.end() && (*at == u'-' || *at == u'+')) ++at;

    const std::int64_t limit = negative ? -std::int64_t{std::numeric_limits<std::int32_t>::min()}
                                        : std::int64_t{std::numeric_limits<std::int32_t>::max()};
    std::int64_t magnitude = 0;
    // QChar::digitValue would also take the digits of other scripts.
    for (; at != text.end() && *at >= u'0' && *at <= u'9'; ++at) {
        magnitude = std::min(limit, magnitude * 10 + (at->unicode() - u'0'));
    }
    return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

}  // namespace quillon
