#include "pdf/read/SourcePage.h"

#include <atomic>

namespace quillon::pdf {

std::uint32_t newOpening() noexcept {
    static std::atomic<std::uint32_t> last{0};
    return ++last;
}

}  // namespace quillon::pdf
