#pragma once

#include "pdf/security/DecryptingReader.h"
#include "pdf/write/ObjectSink.h"

#include <xxhash.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// Knows the streams written so far, so that an equal one of another input is written once: fonts, logos, profiles.
///
/// Streams are told apart by a 128-bit hash of dictionary and data with a seed that no input can know, and where the
/// data comes from a file, the bytes are compared as well.
class StreamIndex {
public:
    struct Key {
        XXH128_hash_t hash{};
        std::uint64_t length = 0;
    };
    StreamIndex();

    [[nodiscard]] Key key(std::string_view dictionary, std::string_view data) const;
    [[nodiscard]] Key key(std::string_view dictionary, InputFile& file, std::span<const FileRange> ranges) const;
    /// Reads `data` to its end.
    [[nodiscard]] Key key(std::string_view dictionary, DecryptingReader& data) const;

    /// The number of an equal stream; nothing if there is none. `data` is the data if it is in memory, otherwise it is
    /// read from `ranges` of `file`.
    [[nodiscard]] std::optional<std::uint32_t> find(const Key& key, std::string_view data) const;
    [[nodiscard]] std::optional<std::uint32_t> find(const Key& key, InputFile& file,
                                                    std::span<const FileRange> ranges) const;
    /// The same by the hash alone, for data that is not in one piece of a file.
    [[nodiscard]] std::optional<std::uint32_t> find(const Key& key) const;
    /// `file` must outlive the index; null for data made in memory.
    void add(const Key& key, std::uint32_t number, InputFile* file, std::span<const FileRange> ranges);

private:
    // Kept small, since every stream of the file has one. Data in several ranges is known by its hash alone.
    struct Known {
        std::uint64_t highHash;
        std::uint64_t length;
        InputFile* file;  // null for data made in memory or in several ranges
        std::uint64_t offset;
        std::uint32_t number;
    };

    [[nodiscard]] const Known* known(const Key& key) const;

    std::uint64_t seed_;
    std::unordered_map<std::uint64_t, Known> known_;  // by the low half of the hash
};

}  // namespace quillon::pdf
