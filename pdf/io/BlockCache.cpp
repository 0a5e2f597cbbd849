#include "pdf/io/BlockCache.h"

#include <algorithm>

namespace quillon::pdf {

OwnedText BlockCache::view(std::uint64_t offset, std::size_t wanted) {
    const std::uint64_t size = file_->size();
    if (offset >= size) return {};
    wanted = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, size - offset));
    const std::size_t within = offset % blockSize;
    if (within + wanted <= blockSize) {
        const auto& bytes = block(offset / blockSize);
        if (within >= bytes->size()) return {};
        return {bytes, std::string_view(*bytes).substr(within)};
    }
    auto bytes = std::make_shared<std::string>();
    append(offset, wanted, *bytes);
    const std::string_view text = *bytes;
    return {std::move(bytes), text};
}

std::size_t BlockCache::append(std::uint64_t offset, std::size_t length, std::string& out) {
    if (offset >= file_->size()) return 0;
    length = static_cast<std::size_t>(std::min<std::uint64_t>(length, file_->size() - offset));
    const std::size_t before = out.size();
    if (length > blockSize) {
        out.resize(before + length);
        const std::size_t got = file_->readAt(offset, std::span(out).subspan(before));
        out.resize(before + got);
        return got;
    }
    while (out.size() - before < length) {
        const std::uint64_t at = offset + (out.size() - before);
        const auto& bytes = block(at / blockSize);
        const std::size_t within = at % blockSize;
        if (within >= bytes->size()) break;
        out.append(*bytes, within, length - (out.size() - before));
    }
    return out.size() - before;
}

const std::shared_ptr<const std::string>& BlockCache::block(std::uint64_t index) {
    const auto found = std::ranges::find(blocks_, index, &Block::index);
    if (found != blocks_.end()) {
        found->lastUse = ++clock_;
        return found->bytes;
    }
    const std::uint64_t offset = index * blockSize;
    const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, file_->size() - offset));
    auto bytes = std::make_shared<std::string>();
    bytes->resize(length);
    bytes->resize(file_->readAt(offset, std::span(*bytes)));
    if (blocks_.size() == mostBlocks) blocks_.erase(std::ranges::min_element(blocks_, {}, &Block::lastUse));
    return blocks_.emplace_back(Block{index, ++clock_, std::move(bytes)}).bytes;
}

}  // namespace quillon::pdf
