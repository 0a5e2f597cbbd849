#include "pdf/write/StreamIndex.h"

#include <algorithm>
#include <cassert>
#include <new>
#include <random>
#include <string>
#include <utility>

namespace quillon::pdf {

namespace {

constexpr std::size_t piece = 256 * 1024;

/// Reads the concatenation of ranges of a file piece by piece.
class RangeReader {
public:
    /// `room` is for `piece` bytes; it is made when it is first needed, and may be used again.
    RangeReader(InputFile& file, std::span<const FileRange> ranges, std::unique_ptr<char[]>& room)
        : file_(file), ranges_(ranges), room_(room) {}

    /// Up to `most` bytes, no more than a piece; fewer only at the end or where the file has become shorter.
    std::string_view next(std::size_t most) {
        if (!room_) room_ = std::make_unique_for_overwrite<char[]>(piece);
        std::size_t length = 0;
        while (length < most && range_ < ranges_.size()) {
            const FileRange range = ranges_[range_];
            const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(most - length, range.length - done_));
            const std::size_t got = file_.readAt(range.offset + done_, std::span(room_.get() + length, wanted));
            length += got;
            done_ += got;
            if (got < wanted) break;
            if (done_ == range.length) {
                ++range_;
                done_ = 0;
            }
        }
        return {room_.get(), length};
    }

    /// Whether all has been read, and nothing was missing.
    [[nodiscard]] bool isAtEnd() const noexcept { return range_ == ranges_.size(); }

private:
    InputFile& file_;
    std::span<const FileRange> ranges_;
    std::unique_ptr<char[]>& room_;
    std::size_t range_ = 0;
    std::uint64_t done_ = 0;
};

bool sameBytes(RangeReader a, RangeReader b) {
    while (true) {
        const std::string_view left = a.next(piece);
        if (left != b.next(piece)) return false;
        // Where both files have become shorter, nobody knows what the data was.
        if (left.size() < piece) return a.isAtEnd() && b.isAtEnd();
    }
}

bool sameBytes(RangeReader a, std::string_view b) {
    for (; !b.empty(); b.remove_prefix(std::min(piece, b.size()))) {
        if (a.next(std::min(piece, b.size())) != b.substr(0, piece)) return false;
    }
    return true;
}

bool sameBytes(RangeReader a, DecryptingReader& b) {
    bool same = true;
    for (auto bytes = b.next(); !bytes.empty() && same; bytes = b.next()) {
        for (; !bytes.empty() && same; bytes.remove_prefix(std::min(piece, bytes.size())))
            same = a.next(std::min(piece, bytes.size())) == bytes.substr(0, piece);
    }
    b.rewind();
    return same;
}

/// `next` yields the data piece by piece, and nothing at its end.
template <class Next>
XXH128_hash_t hashOfPieces(Next next, std::uint64_t seed) {
    const std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state(XXH3_createState(), XXH3_freeState);
    if (!state) throw std::bad_alloc();
    XXH3_128bits_reset_withSeed(state.get(), seed);
    for (std::string_view bytes = next(); !bytes.empty(); bytes = next()) {
        XXH3_128bits_update(state.get(), bytes.data(), bytes.size());
    }
    return XXH3_128bits_digest(state.get());
}

XXH128_hash_t hashOf(RangeReader reader, std::uint64_t seed) {
    return hashOfPieces([&] { return reader.next(piece); }, seed);
}

XXH128_hash_t hashOf(DecryptingReader& reader, std::uint64_t seed) {
    const XXH128_hash_t hash = hashOfPieces([&] { return reader.next(); }, seed);
    reader.rewind();
    return hash;
}

XXH128_hash_t hashOf(const StreamContent& stream, std::uint64_t seed, std::unique_ptr<char[]>& room) {
    if (stream.data) return XXH3_128bits_withSeed(stream.data->data(), stream.data->size(), seed);
    if (stream.reader) return hashOf(*stream.reader, seed);
    return hashOf(RangeReader(*stream.file, stream.ranges, room), seed);
}

/// Where the data is if it can be read again from one place.
std::pair<InputFile*, std::uint64_t> placeOf(const StreamContent& stream) {
    if (!stream.file || stream.ranges.size() != 1) return {nullptr, 0};
    return {stream.file, stream.ranges.front().offset};
}

}  // namespace

std::uint64_t StreamContent::length() const noexcept {
    if (data) return data->size();
    if (reader) return reader->length();
    std::uint64_t length = 0;
    for (const FileRange& range : ranges) length += range.length;
    return length;
}

StreamIndex::StreamIndex() {
    std::random_device random;
    seed_ = std::uint64_t{random()} << 32U | random();
}

/// A hash of dictionary and length, and of a short stream's first and last bytes: what is compressed mostly ends with a
/// checksum.
std::uint64_t StreamIndex::looksOf(const StreamContent& stream) const {
    constexpr std::size_t edge = 32;
    const std::uint64_t length = stream.length();
    assert(stream.data || length >= longStream);
    // Each hash is the seed of the next. The length is not: what is added to a seed can be made up for by other input.
    const std::uint64_t seed = XXH3_64bits_withSeed(&length, sizeof length, seed_);
    const std::uint64_t looks = XXH3_64bits_withSeed(stream.dictionary.data(), stream.dictionary.size(), seed);
    if (length >= longStream) return looks;
    const std::string_view begin = stream.data->substr(0, edge);
    const std::string_view end = stream.data->substr(stream.data->size() - begin.size());
    return XXH3_64bits_withSeed(end.data(), end.size(), XXH3_64bits_withSeed(begin.data(), begin.size(), looks));
}

std::optional<std::uint32_t> StreamIndex::findOrAdd(const StreamContent& stream, std::uint32_t number) {
    const std::uint64_t looks = looksOf(stream);
    const auto [file, offset] = placeOf(stream);
    const auto [first, isNew] = firstByLooks_.tryEmplace(looks, {file, offset, number});
    if (isNew && file) return std::nullopt;
    if (first.file && !isNew) {
        if (hasBytesOf(first, stream)) return first.number;
        const FileRange range{first.evidence, stream.length()};
        const XXH128_hash_t hash = hashOf(RangeReader(*first.file, std::span(&range, 1), room_), looks);
        byHash_.tryEmplace(hash.low64, first);
        first.file = nullptr;
    }
    return findByHash(stream, looks, number);
}

std::optional<std::uint32_t> StreamIndex::findByHash(const StreamContent& stream, std::uint64_t looks,
                                                     std::uint32_t number) {
    const XXH128_hash_t hash = hashOf(stream, looks, room_);
    const auto [file, offset] = placeOf(stream);
    const auto [known, isNew] = byHash_.tryEmplace(hash.low64, {file, file ? offset : hash.high64, number});
    if (isNew) return std::nullopt;
    const bool isEqual = known.file ? hasBytesOf(known, stream) : known.evidence == hash.high64;
    return isEqual ? std::optional(known.number) : std::nullopt;
}

void StreamIndex::add(const StreamContent& stream, std::uint32_t number) {
    static_cast<void>(findOrAdd(stream, number));
}

void StreamIndex::clear() {
    firstByLooks_.clear();
    byHash_.clear();
    room_.reset();
    otherRoom_.reset();
}

/// Whether the data, of the same length, is that of a stream that is in a file.
bool StreamIndex::hasBytesOf(const Known& known, const StreamContent& stream) {
    const FileRange range{known.evidence, stream.length()};
    const RangeReader reader(*known.file, std::span(&range, 1), room_);
    if (stream.data) return sameBytes(reader, *stream.data);
    if (stream.reader) return sameBytes(reader, *stream.reader);
    return sameBytes(reader, RangeReader(*stream.file, stream.ranges, otherRoom_));
}

}  // namespace quillon::pdf
