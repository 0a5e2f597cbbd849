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

/// A stream about to be written. Its data is in memory, in a file, in both, or comes from a reader.
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
/// Streams are told apart by a 128-bit hash of dictionary and data with a seed that no input can know, and where the
/// data comes from a file, the bytes are compared as well. Two long streams hardly ever have the same dictionary and
/// length, so these are hashed only when a second one comes along.
class StreamIndex {
public:
    /// Bytes from which on a stream is long.
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
    /// The only long stream of its dictionary and length.
    struct Lone {
        InputFile* file = nullptr;  // null once streams of this dictionary and length are found by their hash
        std::uint64_t offset = 0;
        std::uint32_t number = 0;
    };

    /// Whether dictionary and length of a long stream alone show that it is new.
    [[nodiscard]] bool addLone(const StreamContent& stream, std::uint64_t key, std::uint32_t number);
    [[nodiscard]] bool isEqual(const Known& known, const StreamContent& stream, std::uint64_t highHash);

    std::uint64_t seed_;
    HashTable<Known> known_;        // by the low half of the hash
    HashTable<Lone> lones_;         // by the hash of dictionary and length
    std::unique_ptr<char[]> room_;  // what is read to compare it; kept from one to the next
    std::unique_ptr<char[]> otherRoom_;
};

}  // namespace quillon::pdf
