#pragma once

#include "pdf/object/Object.h"
#include "pdf/object/ObjectMap.h"

#include <cstdint>

namespace quillon::pdf {

/// Where an object is (ISO 32000-2, 7.5.4 and 7.5.8).
struct CrossReferenceEntry {
    enum class Kind : std::uint8_t { Unknown, Free, InFile, InObjectStream };

    std::uint64_t place = 0;   ///< InFile: byte offset in the file; InObjectStream: the stream's object number
    std::uint32_t detail = 0;  ///< InFile: generation; InObjectStream: index in the stream
    Kind kind = Kind::Unknown;
};

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
