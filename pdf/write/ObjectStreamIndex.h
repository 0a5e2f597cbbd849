#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace quillon::pdf {

/// An object in an object stream: its number, and where its value begins behind the index.
struct PackedObject {
    std::uint32_t number = 0;
    std::uint32_t offset = 0;
};

/// Writes the index that an object stream begins with (ISO 32000-2, 7.5.7) over the blanks at the beginning of `body`.
/// There must be room for two numbers of ten digits and a blank behind each for every object; what is not needed stays
/// blank. May be done again.
void writeObjectStreamIndex(std::span<const PackedObject> objects, std::string& body) noexcept;

}  // namespace quillon::pdf
