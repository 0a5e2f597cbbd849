#include "pdf/filter/Flate.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <new>

namespace quillon::pdf {

namespace {

struct ReleaseDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const noexcept {
        libdeflate_free_decompressor(decompressor);
    }
};

/// The fast road: right data, inflated at one go. The room is kept for the next call, unless it became very large.
std::optional<std::string> inflateWhole(std::string_view data, std::size_t limit) {
    thread_local const std::unique_ptr<libdeflate_decompressor, ReleaseDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    thread_local std::unique_ptr<char[]> room;
    thread_local std::size_t roomBytes = 0;
    constexpr std::size_t usualRatio = 6;
    constexpr std::size_t mostKept = 4U << 20U;
    if (!decompressor) return std::nullopt;
    std::optional<std::string> out;
    for (std::size_t wanted = data.size() * usualRatio + 4096;; wanted = roomBytes * 3) {
        if (roomBytes < std::min(wanted, limit)) {
            room = std::make_unique_for_overwrite<char[]>(std::min(wanted, limit));
            roomBytes = std::min(wanted, limit);
        }
        std::size_t got = 0;
        const auto result =
            libdeflate_zlib_decompress(decompressor.get(), data.data(), data.size(), room.get(), roomBytes, &got);
        if (result == LIBDEFLATE_SUCCESS && got <= limit) out.emplace(room.get(), got);
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || roomBytes >= limit) break;
    }
    if (roomBytes > mostKept) {
        room.reset();
        roomBytes = 0;
    }
    return out;
}

/// The road for damaged data: piece by piece, keeping what came out before the damage.
std::optional<std::string> inflateDamaged(std::string_view data, std::size_t limit) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) return std::nullopt;
    const std::unique_ptr<z_stream, int (*)(z_stream*)> end(&stream, inflateEnd);
    // zlib's interface is not const-correct; it does not write to its input.
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(data.data()));
    stream.avail_in = static_cast<uInt>(std::min<std::size_t>(data.size(), UINT32_MAX));
    std::string out;
    constexpr std::size_t piece = 64 * 1024;
    for (int result = Z_OK; result == Z_OK;) {
        const std::size_t before = out.size();
        if (before > limit) return std::nullopt;
        out.resize(before + piece);
        stream.next_out = reinterpret_cast<Bytef*>(out.data() + before);
        stream.avail_out = piece;
        result = ::inflate(&stream, Z_SYNC_FLUSH);
        out.resize(before + piece - stream.avail_out);
    }
    if (out.size() > limit) return std::nullopt;
    return out;
}

}  // namespace

std::optional<std::string> inflate(std::string_view data, std::size_t limit) {
    if (auto out = inflateWhole(data, limit)) return out;
    return inflateDamaged(data, limit);
}

std::uint32_t checksum(std::string_view data) noexcept {
    return libdeflate_crc32(0, data.data(), data.size());
}

Deflater::Deflater(int level) : compressor_(libdeflate_alloc_compressor(level)) {
    if (!compressor_) throw std::bad_alloc();
}

void Deflater::deflate(std::string_view data, std::string& out) {
    const std::size_t bound = libdeflate_zlib_compress_bound(compressor_.get(), data.size());
    if (bound > roomBytes_) {
        room_ = std::make_unique_for_overwrite<char[]>(bound);
        roomBytes_ = bound;
    }
    out.assign(room_.get(), libdeflate_zlib_compress(compressor_.get(), data.data(), data.size(), room_.get(), bound));
}

void Deflater::Release::operator()(libdeflate_compressor* compressor) const noexcept {
    libdeflate_free_compressor(compressor);
}

}  // namespace quillon::pdf
