#include "pdf/filter/Flate.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <new>
#include <utility>

namespace quillon::pdf {

namespace {

struct ReleaseDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const noexcept {
        libdeflate_free_decompressor(decompressor);
    }
};

/// Where a thread inflates.
struct Room {
    std::unique_ptr<char[]> memory;
    std::size_t bytes = 0;
};
thread_local Room room;
constexpr std::size_t mostKept = 4U << 20U;

/// The fast road: right data, inflated at one go. The text stays until the next call of the thread.
std::optional<std::string_view> inflateInRoom(std::string_view data, std::size_t limit) {
    thread_local const std::unique_ptr<libdeflate_decompressor, ReleaseDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    constexpr std::size_t usualRatio = 6;
    if (!decompressor) return std::nullopt;
    for (std::size_t wanted = data.size() * usualRatio + 4096;; wanted = room.bytes * 3) {
        if (room.bytes < std::min(wanted, limit)) {
            room.bytes = std::min(wanted, limit);
            room.memory = std::make_unique_for_overwrite<char[]>(room.bytes);
        }
        std::size_t got = 0;
        const auto result = libdeflate_zlib_decompress(decompressor.get(), data.data(), data.size(), room.memory.get(),
                                                       room.bytes, &got);
        if (result == LIBDEFLATE_SUCCESS && got <= limit) return std::string_view(room.memory.get(), got);
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || room.bytes >= limit) return std::nullopt;
    }
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

std::optional<std::string_view> inflateSound(std::string_view data, std::size_t limit) {
    return inflateInRoom(data, std::min(limit, mostKept));
}

std::optional<std::string> inflate(std::string_view data, std::size_t limit) {
    const auto text = inflateInRoom(data, limit);
    auto out = text ? std::optional<std::string>(*text) : std::nullopt;
    if (room.bytes > mostKept) room = {};
    return out ? std::move(out) : inflateDamaged(data, limit);
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
