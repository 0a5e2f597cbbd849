#pragma once

#include <compare>
#include <cstdint>

namespace quillon::pdf {

/// What tells one state of a file from every other: two openings with equal identities read the same bytes.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;                ///< bytes
    std::int64_t modifiedNanoseconds = 0;  ///< since the epoch

    auto operator<=>(const FileIdentity&) const = default;
};

}  // namespace quillon::pdf
