#pragma once

#include "pdf/io/InputFile.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Text with whatever keeps it alive.
struct OwnedText {
    std::shared_ptr<const void> owner;
    std::string_view text;
};

/// Reads a file in blocks and keeps the ones used last, since neighbours of an object are mostly asked for next. A
/// small file may be read as a whole instead. Not thread-safe.
class BlockCache {
public:
    static constexpr std::size_t blockSize = 16 * 1024;  ///< the usual size
    static constexpr std::size_t mostBlocks = 64;

    /// `blockBytes`: the size of the blocks, 1 to `blockSize`; small ones for who reads a little here and there.
    explicit BlockCache(std::shared_ptr<InputFile> file, std::size_t blockBytes = blockSize)
        : file_(std::move(file)), blockBytes_(blockBytes) {
        assert(blockBytes != 0 && blockBytes <= blockSize);
    }
    BlockCache(const BlockCache&) = delete;
    BlockCache& operator=(const BlockCache&) = delete;
    ~BlockCache() { clear(); }

    /// At least `wanted` bytes from `offset`, or what there is up to the end of the file; often more, up to the end of
    /// a block, and so more or less in another cache. Stays valid as long as the result is held.
    [[nodiscard]] OwnedText view(std::uint64_t offset, std::size_t wanted);

    /// Appends `length` bytes from `offset` to `out`. Returns the bytes appended: fewer where the file ends.
    std::size_t append(std::uint64_t offset, std::size_t length, std::string& out);

    /// Reads all of a file of up to `mostBlocks` blocks of the usual size at once, which pays if most of it will be
    /// asked for. A larger one is left, and one that cannot be read to its end. What the other calls give stays the
    /// same.
    void readWhole();
    /// Bytes read and kept.
    [[nodiscard]] std::size_t memory() const noexcept { return blocks_.size() * blockBytes_ + wholeText_.size(); }
    /// Frees what was read. The memory of blocks of the usual size, a MiB at most, is left to the next cache that this
    /// thread fills: memory that the system has to give anew costs as much as reading into it.
    void clear();

    [[nodiscard]] InputFile& file() const noexcept { return *file_; }
    [[nodiscard]] const std::shared_ptr<InputFile>& sharedFile() const noexcept { return file_; }

private:
    struct Block {
        std::uint64_t index = 0;
        std::uint64_t lastUse = 0;
        std::shared_ptr<char[]> bytes;
        std::size_t length = 0;

        [[nodiscard]] std::string_view text() const noexcept { return {bytes.get(), length}; }
    };

    const Block& block(std::uint64_t index);
    Block& blockToFill();
    [[nodiscard]] std::shared_ptr<char[]> freshBytes() const;

    std::shared_ptr<InputFile> file_;
    const std::size_t blockBytes_;
    std::shared_ptr<const char[]> whole_;  // null while the file is read in blocks
    std::string_view wholeText_;           // what stands in `whole_`
    std::vector<Block> blocks_;
    std::size_t last_ = 0;  // place of the block asked for last
    std::uint64_t clock_ = 0;
};

}  // namespace quillon::pdf
