#include "platform/image/FlateEncoder.h"

#include <array>
#include <new>
#include <utility>

namespace quillon {

namespace {

// Above this level a scanned page takes twice the time for some hundredths of its size.
constexpr int compressionLevel = 5;

}  // namespace

FlateEncoder::FlateEncoder() {
    if (deflateInit(&stream_, compressionLevel) != Z_OK) throw std::bad_alloc();
}

FlateEncoder::~FlateEncoder() {
    deflateEnd(&stream_);
}

void FlateEncoder::write(std::span<const unsigned char> data) {
    run(data, Z_NO_FLUSH);
}

std::vector<char> FlateEncoder::finish() {
    run({}, Z_FINISH);
    return std::move(output_);
}

void FlateEncoder::run(std::span<const unsigned char> data, int flush) {
    std::array<unsigned char, 64 * 1024> buffer;
    // zlib does not write through the input pointer; it is not const for the sake of old compilers.
    stream_.next_in = const_cast<unsigned char*>(data.data());
    stream_.avail_in = static_cast<uInt>(data.size());
    do {
        stream_.next_out = buffer.data();
        stream_.avail_out = static_cast<uInt>(buffer.size());
        deflate(&stream_, flush);
        output_.insert(output_.end(), buffer.data(), stream_.next_out);
    } while (stream_.avail_out == 0);
}

}  // namespace quillon
