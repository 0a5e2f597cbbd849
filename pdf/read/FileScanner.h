#pragma once

#include "pdf/io/BlockCache.h"
#include "pdf/read/CrossReferenceTable.h"
#include "pdf/read/StreamText.h"
#include "pdf/security/Decryptor.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillon::pdf {

/// Finds the objects of a file whose cross-reference data is damaged, by reading through it from the first byte. Object
/// numbers are kept; of several objects with one number the last in the file holds. Streams are stepped over by their
/// length where that is right, so that what looks like an object inside one is not taken for it.
class FileScanner {
public:
    /// `decryptor` may be null; object streams that cannot be deciphered then give nothing.
    FileScanner(BlockCache& file, const Decryptor* decryptor) : file_(file), decryptor_(decryptor) {}

    [[nodiscard]] CrossReferenceTable scan();

private:
    struct Found {
        std::uint32_t number;
        std::uint64_t offset;
    };

    std::uint64_t handleObject(std::uint64_t offset, const ObjectHeader& header);
    std::uint64_t endOfStream(std::uint64_t data, std::string_view dictionary);
    void handleTrailer(std::uint64_t offset);
    void addTrailer(const Dictionary& trailer);
    void addObjectStream(const Found& found);

    BlockCache& file_;
    const Decryptor* decryptor_;
    CrossReferenceTable table_;
    std::uint64_t wasted_ = 0;  // bytes looked at for values that have no end
    std::uint64_t packed_ = 0;  // objects found in object streams
    std::vector<Found> objectStreams_;
    std::optional<Reference> catalog_;
};

}  // namespace quillon::pdf
