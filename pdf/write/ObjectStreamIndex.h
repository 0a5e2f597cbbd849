#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace quillon::pdf {

/// An object in an object stream: its number, and where its value begins behind the index.
struct PackedObject {
    std::uint32_t number = 0;
    std::uint32_t offset = 0;
};

/// What the index may need for an object: two numbers of ten digits, a blank behind each.
inline constexpr std::size_t indexBytesOfObject = 22;

/// Writes the index that an object stream begins with (ISO 32000-2, 7.5.7) over the blanks at the beginning of `body`.
/// There must be `indexBytesOfObject` for each; what is not needed stays blank.
void writeObjectStreamIndex(std::span<const PackedObject> objects, std::string& body) noexcept;

}  // namespace quillon::pdf
