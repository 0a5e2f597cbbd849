#pragma once

#include "pdf/io/BlockCache.h"
#include "pdf/object/Object.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// `n g obj` as it stands at the start of an indirect object.
struct ObjectHeader {
    Reference reference;
    std::size_t length = 0;  ///< bytes up to the end of the keyword
};

/// Reads an object header at the start of `text`, white space before it allowed.
[[nodiscard]] std::optional<ObjectHeader> readObjectHeader(std::string_view text) noexcept;

/// If the keyword `stream` stands at `position` (white space before it allowed), where the data begins.
[[nodiscard]] std::optional<std::size_t> streamDataBegin(std::string_view text, std::size_t position) noexcept;

/// Whether `endstream` follows at `offset`, behind white space, of which there may be nearly `BlockCache::blockSize`.
[[nodiscard]] bool endsStreamAt(BlockCache& file, std::uint64_t offset);

/// The length of stream data that begins at `offset`, found by searching `endstream`, or an `endobj` that ends an
/// object, up to `limit` (an offset); an end of line before the keyword does not count.
[[nodiscard]] std::uint64_t searchStreamLength(BlockCache& file, std::uint64_t offset, std::uint64_t limit);

/// A whole stream object, as for a file's own structure.
struct StreamText {
    Reference reference;
    Dictionary dictionary;
    std::string data;  ///< encoded
};

/// Reads the stream that stands at `offset`; nothing when none does. An indirect `Length` is looked up with `resolve`;
/// without it, or when the length is wrong, the end is searched.
[[nodiscard]] std::optional<StreamText> readStreamAt(BlockCache& file, std::uint64_t offset,
                                                     const std::function<Object(Reference)>& resolve = {});

}  // namespace quillon::pdf
