// Whatever stands in a range text: it comes to its end, and every page that it names lies inside the document, but for
// the -1 that stands for none.

#include "merge/RangeResolver.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

using quillon::RangeResolver;

void check(bool condition) {
    if (!condition) std::abort();
}

void checkRange(const RangeResolver& resolver, std::int32_t last) {
    const std::int32_t start = resolver.getStart();
    const std::int32_t end = resolver.getEnd();
    check(start >= 0 || last < 0);
    check(start <= std::max(last, 0) && end <= std::max(last, 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::uint32_t count = 0;
    if (size < sizeof count) return 0;
    std::memcpy(&count, data, sizeof count);
    const auto pages = static_cast<std::int32_t>(count & 0x7fffffffU);
    const auto text = QString::fromUtf8(reinterpret_cast<const char*>(data) + sizeof count,
                                        static_cast<qsizetype>(size - sizeof count));
    RangeResolver resolver(text, pages);
    std::int32_t parts = 0;
    while (resolver.next()) {
        ++parts;
        if (resolver.isRange()) {
            checkRange(resolver, pages - 1);
        } else {
            check(resolver.getValue() <= pages - 1);
        }
    }
    check(parts <= resolver.getNumberOfParts());
    check(!resolver.next());
    return 0;
}
