#pragma once

#include "pdf/security/DecryptingReader.h"
#include "pdf/write/HashTable.h"
#include "pdf/write/ObjectSink.h"

#include <xxhash.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// A stream about to be written. Its data is in memory, in a file, in both, or comes from a reader; that of a short one
/// is always in memory.
struct StreamContent {
    std::string_view dictionary;
    std::optional<std::string_view> data = {};
    InputFile* file = nullptr;
    std::span<const FileRange> ranges = {};  ///< of `file`, whose concatenation is the data
    DecryptingReader* reader = nullptr;      ///< at its beginning, where it is left too

    [[nodiscard]] std::uint64_t length() const noexcept;
};

/// Knows the streams written so far, so that an equal one of another input is written once: fonts, logos, profiles.
///
/// Two streams hardly ever have the same dictionary, length, beginning and end unless they are equal, so the first one
/// that looks like this is compared byte for byte with the second. Only where that one is different are all that look
/// like this told apart by a 128-bit hash of dictionary and data, with a seed that no input can know, before they are
/// compared. Data that is not in a file cannot be read again and has nothing but its hash.
class StreamIndex {
public:
    /// Bytes from which on a stream is long: its data need not be in memory, so its beginning and end are not
    /// looked at.
    static constexpr std::uint64_t longStream = 64U << 10U;

    StreamIndex();

    /// The number of an equal stream; if there is none, nothing, and the stream is entered as `number`. The file of
    /// `stream` must outlive the index.
    [[nodiscard]] std::optional<std::uint32_t> findOrAdd(const StreamContent& stream, std::uint32_t number);
    /// Enters the stream as `number`; of equal ones the first is found.
    void add(const StreamContent& stream, std::uint32_t number);
    /// Forgets all streams and frees their memory.
    void clear();

private:
    // Kept small, since every stream of the file has one.
    struct Known {
        InputFile* file = nullptr;   // null for data made in memory or in several ranges
        std::uint64_t evidence = 0;  // what shows that a stream is equal: the offset of the data, without a file the
                                     // high half of the hash
        std::uint32_t number = 0;
    };

    [[nodiscard]] std::uint64_t looksOf(const StreamContent& stream) const;
    [[nodiscard]] std::optional<std::uint32_t> findByHash(const StreamContent& stream, std::uint64_t looks,
                                                          std::uint32_t number);
    [[nodiscard]] bool hasBytesOf(const Known& known, const StreamContent& stream);

    std::uint64_t seed_;
    // By a hash of their looks, without a file once those that look like this are found by their hash.
    HashTable<Known> first_;
    HashTable<Known> hashed_;       // by the low half of the hash
    std::unique_ptr<char[]> room_;  // what is read to compare it; kept from one to the next
    std::unique_ptr<char[]> otherRoom_;
};

}  // namespace quillon::pdf
