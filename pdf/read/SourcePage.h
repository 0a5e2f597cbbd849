#pragma once

#include "pdf/read/Source.h"

#include <cstdint>
#include <memory>
#include <string>

namespace quillon::pdf {

/// A page of a source: all that a document under construction keeps of it.
struct SourcePage {
    std::shared_ptr<Source> source;  ///< never null
    std::uint32_t index = 0;         ///< zero-based place in the source
    std::uint32_t opening = 0;       ///< tells the openings of one file apart, see `newOpening`
};

/// A value as it stands in a source, with references to objects of that source.
struct SourceText {
    std::shared_ptr<Source> source;  ///< null: there is no value
    std::uint32_t opening = 0;
    std::string text;
};

/// A number for one opening of a file. Links between pages that were taken from the same opening stay among them.
[[nodiscard]] std::uint32_t newOpening() noexcept;

}  // namespace quillon::pdf
