#pragma once

#include "pdf/io/BlockCache.h"
#include "pdf/read/CrossReferenceTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// Reads the cross-reference sections of a file from `startxref` back along `Prev` and `XRefStm`: tables, streams and
/// hybrids (ISO 32000-2, 7.5.4, 7.5.6, 7.5.8).
class CrossReferenceReader {
public:
    /// `headerOffset` is where `%PDF-` stands; offsets that do not fit as they are, are tried from there.
    CrossReferenceReader(BlockCache& file, std::uint64_t headerOffset) : file_(file), headerOffset_(headerOffset) {}

    /// Nothing when a section is damaged or missing: the file must then be scanned.
    [[nodiscard]] std::optional<CrossReferenceTable> read();

    /// What must be added to the offsets of the table to get places in the file: 0, or the header's offset.
    [[nodiscard]] std::uint64_t bias() const noexcept { return bias_; }

private:
    std::optional<std::uint64_t> findStart();
    bool readSection(std::uint64_t offset, Dictionary& trailer);
    bool readTable(std::uint64_t offset, Dictionary& trailer);
    bool readSubsection(std::uint64_t& offset, std::uint64_t first, std::uint64_t count);
    bool readStream(std::uint64_t offset, Dictionary& trailer);
    bool addStreamEntries(const Dictionary& dictionary, std::string_view data);
    [[nodiscard]] CrossReferenceEntry streamEntry(const char* row, const std::array<std::size_t, 3>& width) const;
    void complete(const Dictionary& older);

    BlockCache& file_;
    std::uint64_t headerOffset_;
    std::uint64_t bias_ = 0;
    CrossReferenceTable table_;
    std::vector<std::pair<std::uint32_t, CrossReferenceEntry>> freed_;  // by the table read last
    std::unordered_set<std::uint64_t> visited_;
    std::uint64_t rows_ = 0;  // of cross-reference streams
};

}  // namespace quillon::pdf
