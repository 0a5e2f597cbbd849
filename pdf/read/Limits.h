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
inline constexpr std::size_t objectText = 64U << 20U;
/// Bytes of all keys of one name or number tree.
inline constexpr std::size_t treeKeys = 64U << 20U;
/// Nodes of an outline, bytes of their titles and actions, and how deep it may be: what lies deeper stands beside its
/// parent.
inline constexpr std::size_t outlineNodes = 1'000'000;
inline constexpr std::size_t outlineText = 64U << 20U;
inline constexpr std::uint32_t outlineDepth = 256;

}  // namespace quillon::pdf::limits
