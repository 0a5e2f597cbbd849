#include "pdf/write/StreamIndex.h"

#include <algorithm>
#include <random>
#include <string>

namespace quillon::pdf {

namespace {

constexpr std::size_t piece = 256 * 1024;

/// Reads the concatenation of ranges of a file piece by piece.
class RangeReader {
public:
    RangeReader(InputFile& file, std::span<const FileRange> ranges) : file_(file), ranges_(ranges) {}

    /// Up to `most` bytes, fewer only at the end or where the file has become shorter.
    std::string_view next(std::size_t most) {
        buffer_.clear();
        while (buffer_.size() < most && range_ < ranges_.size()) {
            const FileRange range = ranges_[range_];
            const auto wanted =
                static_cast<std::size_t>(std::min<std::uint64_t>(most - buffer_.size(), range.length - done_));
            const std::size_t before = buffer_.size();
            buffer_.resize(before + wanted);
            const std::size_t got = file_.readAt(range.offset + done_, std::span(buffer_).subspan(before));
            buffer_.resize(before + got);
            done_ += got;
            if (got < wanted) break;
            if (done_ == range.length) {
                ++range_;
                done_ = 0;
            }
        }
        return buffer_;
    }

private:
    InputFile& file_;
    std::span<const FileRange> ranges_;
    std::size_t range_ = 0;
    std::uint64_t done_ = 0;
    std::string buffer_;
};

std::uint64_t lengthOf(std::span<const FileRange> ranges) {
    std::uint64_t length = 0;
    for (const FileRange& range : ranges) length += range.length;
    return length;
}

bool sameBytes(InputFile& a, FileRange aRange, InputFile& b, FileRange bRange) {
    RangeReader readerA(a, std::span(&aRange, 1));
    RangeReader readerB(b, std::span(&bRange, 1));
    while (true) {
        const std::string_view left = readerA.next(piece);
        if (left != readerB.next(piece)) return false;
        if (left.size() < piece) return true;
    }
}

}  // namespace

StreamIndex::StreamIndex() {
    std::random_device random;
    seed_ = std::uint64_t{random()} << 32U | random();
}

StreamIndex::Key StreamIndex::key(std::string_view dictionary, std::string_view data) const {
    const std::uint64_t seed = XXH3_64bits_withSeed(dictionary.data(), dictionary.size(), seed_);
    return {XXH3_128bits_withSeed(data.data(), data.size(), seed), data.size()};
}

StreamIndex::Key StreamIndex::key(std::string_view dictionary, InputFile& file,
                                  std::span<const FileRange> ranges) const {
    const std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state(XXH3_createState(), XXH3_freeState);
    XXH3_128bits_reset_withSeed(state.get(), XXH3_64bits_withSeed(dictionary.data(), dictionary.size(), seed_));
    RangeReader reader(file, ranges);
    for (std::string_view bytes = reader.next(piece); !bytes.empty(); bytes = reader.next(piece)) {
        XXH3_128bits_update(state.get(), bytes.data(), bytes.size());
    }
    return {XXH3_128bits_digest(state.get()), lengthOf(ranges)};
}

StreamIndex::Key StreamIndex::key(std::string_view dictionary, DecryptingReader& data) const {
    const std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state(XXH3_createState(), XXH3_freeState);
    XXH3_128bits_reset_withSeed(state.get(), XXH3_64bits_withSeed(dictionary.data(), dictionary.size(), seed_));
    for (std::string_view bytes = data.next(); !bytes.empty(); bytes = data.next()) {
        XXH3_128bits_update(state.get(), bytes.data(), bytes.size());
    }
    return {XXH3_128bits_digest(state.get()), data.length()};
}

const StreamIndex::Known* StreamIndex::known(const Key& key) const {
    const auto found = known_.find(key.hash.low64);
    if (found == known_.end()) return nullptr;
    const Known& known = found->second;
    return known.highHash == key.hash.high64 && known.length == key.length ? &known : nullptr;
}

std::optional<std::uint32_t> StreamIndex::find(const Key& key, std::string_view data) const {
    const Known* equal = known(key);
    if (!equal) return std::nullopt;
    if (!equal->file) return equal->number;
    const FileRange range{equal->offset, equal->length};
    RangeReader reader(*equal->file, std::span(&range, 1));
    for (std::string_view left = data; !left.empty(); left.remove_prefix(std::min(piece, left.size()))) {
        if (reader.next(piece) != left.substr(0, piece)) return std::nullopt;
    }
    return equal->number;
}

std::optional<std::uint32_t> StreamIndex::find(const Key& key, InputFile& file,
                                               std::span<const FileRange> ranges) const {
    const Known* equal = known(key);
    if (!equal) return std::nullopt;
    const bool comparable = equal->file && ranges.size() == 1;
    if (comparable && !sameBytes(file, ranges.front(), *equal->file, {equal->offset, equal->length}))
        return std::nullopt;
    return equal->number;
}

std::optional<std::uint32_t> StreamIndex::find(const Key& key) const {
    const Known* equal = known(key);
    return equal ? std::optional(equal->number) : std::nullopt;
}

void StreamIndex::add(const Key& key, std::uint32_t number, InputFile* file, std::span<const FileRange> ranges) {
    const bool single = file && ranges.size() == 1;
    known_.try_emplace(key.hash.low64, Known{key.hash.high64, key.length, single ? file : nullptr,
                                             single ? ranges.front().offset : 0, number});
}

}  // namespace quillon::pdf
