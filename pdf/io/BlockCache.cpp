#include "pdf/io/BlockCache.h"

#include <algorithm>
#include <utility>

namespace quillon::pdf {

namespace {

/// Blocks that nobody reads any more, for caches of this thread.
std::vector<std::shared_ptr<char[]>>& spareBlocks() {
    thread_local std::vector<std::shared_ptr<char[]>> spare;
    return spare;
}

}  // namespace

OwnedText BlockCache::view(std::uint64_t offset, std::size_t wanted) {
    const std::uint64_t size = file_->size();
    if (offset >= size) return {};
    wanted = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, size - offset));
    const std::size_t within = offset % blockBytes_;
    if (whole_) {
        return {whole_, wholeText_.substr(static_cast<std::size_t>(offset), std::max(wanted, blockBytes_ - within))};
    }
    if (within + wanted <= blockBytes_) {
        const Block& found = block(offset / blockBytes_);
        if (within >= found.length) return {};
        return {found.bytes, found.text().substr(within)};
    }
    auto bytes = std::make_shared<std::string>();
    append(offset, wanted, *bytes);
    const std::string_view text = *bytes;
    return {bytes, text};
}

std::size_t BlockCache::append(std::uint64_t offset, std::size_t length, std::string& out) {
    if (offset >= file_->size()) return 0;
    length = static_cast<std::size_t>(std::min<std::uint64_t>(length, file_->size() - offset));
    const std::size_t before = out.size();
    if (whole_) {
        out += wholeText_.substr(static_cast<std::size_t>(offset), length);
        return out.size() - before;
    }
    if (length > blockBytes_) {
        out.resize(before + length);
        const std::size_t got = file_->readAt(offset, std::span(out).subspan(before));
        out.resize(before + got);
        return got;
    }
    while (out.size() - before < length) {
        const std::uint64_t at = offset + (out.size() - before);
        const std::string_view text = block(at / blockBytes_).text();
        const std::size_t within = at % blockBytes_;
        if (within >= text.size()) break;
        out += text.substr(within, length - (out.size() - before));
    }
    return out.size() - before;
}

void BlockCache::readWhole() {
    if (whole_ || file_->size() > mostBlocks * blockSize) return;
    const auto size = static_cast<std::size_t>(file_->size());
    auto bytes = std::make_shared_for_overwrite<char[]>(size);
    // Of a file that cannot be read to its end, blocks behind the place where it ends may still be readable.
    if (file_->readAt(0, std::span(bytes.get(), size)) < size) return;
    wholeText_ = {bytes.get(), size};
    whole_ = std::move(bytes);
    blocks_ = {};
}

const BlockCache::Block& BlockCache::block(std::uint64_t index) {
    if (last_ < blocks_.size() && blocks_[last_].index == index) return blocks_[last_];
    const auto found = std::ranges::find(blocks_, index, &Block::index);
    if (found != blocks_.end()) {
        found->lastUse = ++clock_;
        last_ = static_cast<std::size_t>(found - blocks_.begin());
        return *found;
    }
    const std::uint64_t offset = index * blockBytes_;
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(blockBytes_, file_->size() - offset));
    Block& block = blockToFill();
    block.index = UINT64_MAX;  // none, should the reading throw
    block.length = file_->readAt(offset, std::span(block.bytes.get(), length));
    block.index = index;
    block.lastUse = ++clock_;
    last_ = static_cast<std::size_t>(&block - blocks_.data());
    return block;
}

/// A new block, or the one used longest ago once the cache is full; with its memory, unless somebody still reads there.
BlockCache::Block& BlockCache::blockToFill() {
    if (blocks_.size() < mostBlocks) return blocks_.emplace_back(Block{.bytes = freshBytes()});
    Block& oldest = *std::ranges::min_element(blocks_, {}, &Block::lastUse);
    if (oldest.bytes.use_count() != 1) oldest.bytes = freshBytes();
    return oldest;
}

/// Memory for a block.
std::shared_ptr<char[]> BlockCache::freshBytes() const {
    auto& spare = spareBlocks();
    if (blockBytes_ == blockSize && !spare.empty()) {
        auto bytes = std::move(spare.back());
        spare.pop_back();
        return bytes;
    }
    spare.reserve(mostBlocks);  // so that `clear` never fails
    return std::make_shared_for_overwrite<char[]>(blockBytes_);
}

void BlockCache::clear() {
    auto& spare = spareBlocks();
    const std::size_t most = blockBytes_ == blockSize ? spare.capacity() : 0;
    for (Block& block : blocks_) {
        if (block.bytes.use_count() == 1 && spare.size() < most) spare.push_back(std::move(block.bytes));
    }
    blocks_ = {};
    whole_.reset();
    wholeText_ = {};
}

}  // namespace quillon::pdf
