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
/// Whether streams look alike is told by a hash of dictionary and length, and of a short one's first and last bytes;
/// two that do not are different. One that looks like the first of its kind is compared with it byte for byte. From the
/// first difference on, all that look like these are found by a hash of their data, and compared as well if that is one
/// piece of a file. Of other data only the hash is kept, and of dictionaries too. The seed of all hashes is one that no
/// input can know. An input that is changed while it is copied may be taken for what it holds by then.
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
    // Kept small, since every stream of the file has one, and one in each table where its data cannot be read again.
    struct Known {
        InputFile* file = nullptr;   // null for data that is not one piece of a file
        std::uint64_t evidence = 0;  // what shows that a stream is equal: the offset of the data, without a file the
                                     // high half of its hash
        std::uint32_t number = 0;
    };

    [[nodiscard]] std::uint64_t looksOf(const StreamContent& stream) const;
    [[nodiscard]] std::optional<std::uint32_t> findByHash(const StreamContent& stream, std::uint64_t looks,
                                                          std::uint32_t number);
    [[nodiscard]] bool hasBytesOf(const Known& known, const StreamContent& stream);

    std::uint64_t seed_;
    // The first streams of their kind, by a hash of their looks. Without a file, and with evidence of no use, once
    // those that look alike are found by the hash of their data.
    HashTable<Known> firstByLooks_;
    HashTable<Known> byHash_;       // by the low half of the hash of their data
    std::unique_ptr<char[]> room_;  // what is read to compare it; kept from one to the next
    std::unique_ptr<char[]> otherRoom_;
};

}  // namespace quillon::pdf
