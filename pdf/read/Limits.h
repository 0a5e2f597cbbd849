#pragma once

#include <cstddef>
#include <cstdint>

/// Bounds that no sound file comes near, so that a hostile one cannot exhaust memory.
namespace quillon::pdf::limits {

/// Bytes of a trailer dictionary.
inline constexpr std::size_t trailer = 1U << 20U;
/// Bytes that a cross-reference or object stream may decode to.
inline constexpr std::size_t decodedStream = 64U << 20U;
/// Objects in one object stream.
inline constexpr std::size_t packedObjects = 1'000'000;
/// Entries that cross-reference data may have beyond one for each byte of the file.
inline constexpr std::uint64_t tableMargin = 1U << 16U;
/// Bytes of the text of one object that is no stream.
inline constexpr std::size_t objectText = 256U << 20U;

}  // namespace quillon::pdf::limits
