#include "platform/image/FaxEncoder.h"

#include "platform/image/TiffStream.h"

#include <tiffio.h>

#include <algorithm>
#include <cstddef>
#include <new>

namespace quillon {

// libtiff writes whole files only: this is one in memory, whose single strip is the result.
class FaxEncoder::File final : public TiffStream {
public:
    std::vector<char> bytes;
    Handle tiff = open("w");

    [[nodiscard]] std::uint64_t size() const override { return bytes.size(); }

    std::size_t readAt(std::uint64_t offset, std::span<char> into) override {
        if (offset >= bytes.size()) return 0;
        const std::size_t count = std::min<std::size_t>(into.size(), bytes.size() - offset);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), count, into.begin());
        return count;
    }

    std::size_t writeAt(std::uint64_t offset, std::span<const char> data) override {
        if (bytes.size() < offset + data.size()) bytes.resize(offset + data.size());
        std::copy(data.begin(), data.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        return data.size();
    }
};

FaxEncoder::FaxEncoder(int width, int height) : file_(std::make_unique<File>()) {
    TIFF* const tiff = file_->tiff.get();
    if (!tiff) throw std::bad_alloc();
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(height));
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
}

FaxEncoder::~FaxEncoder() = default;

void FaxEncoder::write(std::span<const unsigned char> row) {
    // libtiff does not write through the pointer: there are no bytes to swap in pixels of one bit.
    TIFFWriteScanline(file_->tiff.get(), const_cast<unsigned char*>(row.data()), nextRow_++);
}

std::vector<char> FaxEncoder::finish() {
    TIFF* const tiff = file_->tiff.get();
    TIFFFlushData(tiff);
    const auto start = file_->bytes.begin() + static_cast<std::ptrdiff_t>(TIFFGetStrileOffset(tiff, 0));
    return {start, start + static_cast<std::ptrdiff_t>(TIFFGetStrileByteCount(tiff, 0))};
}

}  // namespace quillon
