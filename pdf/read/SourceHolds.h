#pragma once

#include "pdf/read/Source.h"

#include <cstddef>
#include <deque>
#include <memory>

namespace quillon::pdf {

/// Keeps the structure of the sources used last in memory, for one who asks page after page: otherwise that of a large
/// file is read anew for each. Used by one thread.
class SourceHolds {
public:
    SourceHolds() = default;
    SourceHolds(const SourceHolds&) = delete;
    SourceHolds& operator=(const SourceHolds&) = delete;
    ~SourceHolds();

    /// To be called before a page of `source` is asked for something.
    void use(const std::shared_ptr<Source>& source);

private:
    // As many as are commonly woven page by page.
    static constexpr std::size_t most = 8;

    std::deque<std::shared_ptr<Source>> held_;  // the last one used is last
};

}  // namespace quillon::pdf
