#pragma once

#include "pdf/read/Source.h"

#include <cstdint>
#include <memory>

namespace quillon::pdf {

/// A page of a source: all that a document under construction keeps of it.
struct SourcePage {
    std::shared_ptr<Source> source;  ///< never null
    std::uint32_t index = 0;         ///< zero-based place in the source
    std::uint32_t opening = 0;       ///< tells the openings of one file apart, see `newOpening`
};

/// A number for one opening of a file. Links between pages that were taken from the same opening stay among them.
[[nodiscard]] std::uint32_t newOpening() noexcept;

}  // namespace quillon::pdf
