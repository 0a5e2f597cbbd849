#pragma once

#include "pdf/object/Object.h"
#include "pdf/object/ObjectMap.h"

#include <algorithm>
#include <cstdint>

namespace quillon::pdf {

/// Where an object is (ISO 32000-2, 7.5.4 and 7.5.8). Small, since a file may have a million of them.
struct CrossReferenceEntry {
    enum class Kind : std::uint8_t { Unknown, Free, InFile, InObjectStream };

    static constexpr std::uint64_t farthestPlace = (std::uint64_t{1} << 46U) - 1;
    static constexpr std::uint64_t highestDetail = 0xffff;

    CrossReferenceEntry() noexcept : place(0), detail(0), kind(Kind::Unknown) {}
    /// Values that are too high, which no sound file has, become the highest.
    CrossReferenceEntry(Kind kindOfPlace, std::uint64_t placeOf, std::uint64_t detailOf) noexcept
        : place(std::min(placeOf, farthestPlace) & farthestPlace),
          detail(std::min(detailOf, highestDetail) & highestDetail),
          kind(kindOfPlace) {}

    std::uint64_t place : 46;   ///< InFile: byte offset in the file; InObjectStream: the stream's object number
    std::uint64_t detail : 16;  ///< InFile: generation; InObjectStream: index in the stream, as far as it goes
    Kind kind : 2;
};
static_assert(sizeof(CrossReferenceEntry) == sizeof(std::uint64_t));

/// The cross-reference data of a file, all its sections merged.
struct CrossReferenceTable {
    ObjectMap<CrossReferenceEntry> entries;
    Dictionary trailer;      ///< of the newest section, completed from older ones
    bool recovered = false;  ///< found by scanning the file; generations then do not count

    /// Keeps an entry that is known already: sections are read from the newest to the oldest.
    void addOlder(std::uint32_t number, const CrossReferenceEntry& entry) {
        CrossReferenceEntry& known = entries.at(number);
        if (known.kind == CrossReferenceEntry::Kind::Unknown) known = entry;
    }
};

/// Object numbers above this are refused.
inline constexpr std::uint64_t maximumObjectNumber = 0x7fffffff;

}  // namespace quillon::pdf
