#include "platform/image/TiffFile.h"

#include <tiffio.h>

#include <utility>

namespace quillon {

namespace {

// Strip offsets are read one by one when wanted (O), the file is not mapped (m), and strips are left as the file has
// them (c), since they may be copied.
constexpr const char* readMode = "rOmc";

// The T6Options bit that allows uncompressed runs, which /CCITTFaxDecode does not know.
constexpr std::uint32_t uncompressedMode = 2;

}  // namespace

std::unique_ptr<TiffFile> TiffFile::open(std::shared_ptr<pdf::InputFile> file) {
    std::unique_ptr<TiffFile> result(new TiffFile(std::move(file)));
    return result->tiff_ ? std::move(result) : nullptr;
}

TiffFile::TiffFile(std::shared_ptr<pdf::InputFile> file) : file_(std::move(file)), tiff_(TiffStream::open(readMode)) {}

std::uint64_t TiffFile::size() const {
    return file_->size();
}

std::size_t TiffFile::readAt(std::uint64_t offset, std::span<char> into) {
    return file_->readAt(offset, into);
}

std::size_t TiffFile::writeAt(std::uint64_t, std::span<const char>) {
    return 0;
}

template <typename Value>
Value TiffFile::tag(std::uint32_t number) const {
    Value value{};
    return TIFFGetFieldDefaulted(tiff_.get(), number, &value) == 1 ? value : Value{};
}

std::uint32_t TiffFile::width() const {
    return tag<std::uint32_t>(TIFFTAG_IMAGEWIDTH);
}

std::uint32_t TiffFile::height() const {
    return tag<std::uint32_t>(TIFFTAG_IMAGELENGTH);
}

std::optional<Resolution> TiffFile::resolution() const {
    const auto horizontal = static_cast<double>(tag<float>(TIFFTAG_XRESOLUTION));
    const auto vertical = static_cast<double>(tag<float>(TIFFTAG_YRESOLUTION));
    return Resolution::perTiffUnit(tag<std::uint16_t>(TIFFTAG_RESOLUTIONUNIT), horizontal, vertical);
}

Orientation TiffFile::orientation() const {
    return Orientation(tag<std::uint16_t>(TIFFTAG_ORIENTATION));
}

std::vector<char> TiffFile::profile() const {
    std::uint32_t length = 0;
    const char* bytes = nullptr;
    if (TIFFGetField(tiff_.get(), TIFFTAG_ICCPROFILE, &length, &bytes) != 1 || bytes == nullptr) return {};
    return {bytes, bytes + length};
}

bool TiffFile::isBilevel() const {
    const auto photometric = tag<std::uint16_t>(TIFFTAG_PHOTOMETRIC);
    return tag<std::uint16_t>(TIFFTAG_BITSPERSAMPLE) == 1 && tag<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL) == 1 &&
           (photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK) &&
           TIFFIsTiled(tiff_.get()) == 0 && TIFFIsCODECConfigured(tag<std::uint16_t>(TIFFTAG_COMPRESSION)) == 1;
}

bool TiffFile::isWhiteZero() const {
    return tag<std::uint16_t>(TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_MINISWHITE;
}

std::optional<pdf::FileRange> TiffFile::groupFourStrip() const {
    if (!isBilevel() || tag<std::uint16_t>(TIFFTAG_COMPRESSION) != COMPRESSION_CCITTFAX4) return std::nullopt;
    if ((tag<std::uint32_t>(TIFFTAG_GROUP4OPTIONS) & uncompressedMode) != 0) return std::nullopt;
    if (TIFFNumberOfStrips(tiff_.get()) != 1) return std::nullopt;
    const pdf::FileRange strip{TIFFGetStrileOffset(tiff_.get(), 0), TIFFGetStrileByteCount(tiff_.get(), 0)};
    const bool isWithinFile = strip.offset > 0 && strip.length > 0 && strip.offset <= file_->size() &&
                              strip.length <= file_->size() - strip.offset;
    return isWithinFile ? std::optional(strip) : std::nullopt;
}

bool TiffFile::hasReversedBits() const {
    return tag<std::uint16_t>(TIFFTAG_FILLORDER) == FILLORDER_LSB2MSB;
}

std::span<unsigned char> TiffFile::readRow(std::uint32_t row) {
    row_.resize(static_cast<std::size_t>(TIFFScanlineSize(tiff_.get())));
    const bool isRead = !row_.empty() && TIFFReadScanline(tiff_.get(), row_.data(), row) == 1;
    return isRead ? std::span(row_) : std::span<unsigned char>();
}

}  // namespace quillon
