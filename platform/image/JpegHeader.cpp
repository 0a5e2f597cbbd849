#include "platform/image/JpegHeader.h"

#include "platform/image/ByteView.h"
#include "platform/image/FileBytes.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>

namespace quillon {

namespace {

using namespace std::string_view_literals;

constexpr auto jfifSignature = "JFIF\0"sv;
constexpr auto exifSignature = "Exif\0\0"sv;
constexpr auto profileSignature = "ICC_PROFILE\0"sv;
constexpr auto adobeSignature = "Adobe"sv;

// Real headers have some dozens of segments, several hundred with large profiles and metadata; the bounds keep a
// crafted file from being read marker by marker for minutes.
constexpr int mostSegments = 10'000;
constexpr int mostFillBytes = 1024;

bool isStandalone(unsigned marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7);
}

// SOF0 … SOF15 without DHT, JPG and DAC, which lie between them.
bool isStartOfFrame(unsigned marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

class Scanner {
public:
    explicit Scanner(pdf::InputFile& file) : file_(file) {}

    std::optional<JpegHeader> scan() {
        if (readAhead(2).u16(0) != 0xFFD8) return std::nullopt;
        offset_ = 2;
        for (int segment = 0; segment < mostSegments; ++segment) {
            const std::optional<unsigned> marker = nextMarker();
            if (!marker || *marker == 0xD8 || *marker == 0xD9) return std::nullopt;
            if (isStandalone(*marker)) continue;
            if (*marker == 0xDA) return finish();
            const std::size_t length = readAhead(2).u16(0);
            if (length < 2) return std::nullopt;
            readSegment(*marker, offset_ + 2, length - 2);
            offset_ += length;
        }
        return std::nullopt;
    }

private:
    static constexpr std::size_t blockLength = 4096;

    // A view of at least `length` bytes at offset_, fewer at the end of the file. Headers are a few kilobytes of small
    // fields: one block holds most of them.
    ByteView readAhead(std::size_t length) {
        const bool isInBlock = offset_ >= blockOffset_ && offset_ + length <= blockOffset_ + block_.size();
        if (!isInBlock) {
            block_.resize(blockLength);
            blockOffset_ = offset_;
            block_.resize(file_.readAt(offset_, block_));
        }
        return ByteView(std::span(block_).subspan(static_cast<std::size_t>(offset_ - blockOffset_)));
    }

    std::optional<unsigned> nextMarker() {
        for (int fill = 0; fill < mostFillBytes; ++fill) {
            const ByteView bytes = readAhead(2);
            if (!bytes.has(0, 2) || bytes.u8(0) != 0xFF) return std::nullopt;
            const unsigned marker = bytes.u8(1);
            if (marker == 0) return std::nullopt;
            if (marker != 0xFF) {
                offset_ += 2;
                return marker;
            }
            ++offset_;
        }
        return std::nullopt;
    }

    void readSegment(unsigned marker, std::uint64_t at, std::size_t length) {
        if (isStartOfFrame(marker)) return readFrame(marker, at, length);
        switch (marker) {
            case 0xE0:
                return readJfif(at, length);
            case 0xE1:
                return readExif(at, length);
            case 0xE2:
                return notePieceOfProfile(at, length);
            case 0xEE:
                return readAdobe(at, length);
            default:
                return;
        }
    }

    std::vector<char> read(std::uint64_t at, std::size_t length) {
        if (at >= blockOffset_ && at + length <= blockOffset_ + block_.size()) {
            const auto begin = block_.begin() + static_cast<std::ptrdiff_t>(at - blockOffset_);
            return {begin, begin + static_cast<std::ptrdiff_t>(length)};
        }
        return readExactly(file_, at, length).value_or(std::vector<char>());
    }

    void readFrame(unsigned marker, std::uint64_t at, std::size_t length) {
        if (header_.startOfFrame != 0) return;
        const std::vector<char> segment = read(at, length);
        const ByteView frame(segment);
        header_.startOfFrame = static_cast<std::uint8_t>(marker);
        header_.precision = frame.u8(0);
        header_.height = frame.u16(1);
        header_.width = frame.u16(3);
        header_.components = frame.u8(5);
        for (std::size_t index = 0; index < header_.componentIds.size(); ++index)
            header_.componentIds[index] = frame.u8(6 + 3 * index);
    }

    void readJfif(std::uint64_t at, std::size_t length) {
        const std::vector<char> segment = read(at, std::min<std::size_t>(length, 12));
        const ByteView jfif(segment);
        if (!jfif.startsWith(jfifSignature) || header_.hasJfifMarker) return;
        header_.hasJfifMarker = true;
        const double horizontal = jfif.u16(8);
        const double vertical = jfif.u16(10);
        switch (jfif.u8(7)) {
            case 1:
                header_.resolution = Resolution::perInch(horizontal, vertical);
                break;
            case 2:
                header_.resolution = Resolution::perCentimetre(horizontal, vertical);
                break;
            default:
                break;  // the values are the shape of a pixel, not its size
        }
    }

    void readExif(std::uint64_t at, std::size_t length) {
        const std::vector<char> segment = read(at, length);
        if (hasExif_ || !ByteView(segment).startsWith(exifSignature)) return;
        hasExif_ = true;
        exif_ = ExifTags::parse(std::span(segment).subspan(exifSignature.size()));
    }

    void readAdobe(std::uint64_t at, std::size_t length) {
        constexpr std::size_t adobeLength = 12;
        const std::vector<char> segment = read(at, std::min(length, adobeLength));
        if (segment.size() == adobeLength && ByteView(segment).startsWith(adobeSignature))
            header_.hasAdobeMarker = true;
    }

    void notePieceOfProfile(std::uint64_t at, std::size_t length) {
        constexpr std::size_t prefixLength = profileSignature.size() + 2;
        if (length < prefixLength) return;
        const std::vector<char> prefix = read(at, prefixLength);
        const ByteView bytes(prefix);
        if (!bytes.startsWith(profileSignature)) return;
        pieces_.try_emplace(bytes.u8(prefixLength - 2), pdf::FileRange{at + prefixLength, length - prefixLength});
        pieceCount_ = bytes.u8(prefixLength - 1);
    }

    std::optional<JpegHeader> finish() {
        if (header_.startOfFrame == 0 || header_.width == 0 || header_.height == 0) return std::nullopt;
        header_.orientation = exif_.orientation;
        if (!header_.resolution) header_.resolution = exif_.resolution;
        const bool isWhole = !pieces_.empty() && pieces_.size() == pieceCount_ && pieces_.begin()->first == 1 &&
                             pieces_.rbegin()->first == pieceCount_;
        if (isWhole) {
            for (const auto& [number, range] : pieces_) header_.profile.push_back(range);
        }
        return header_;
    }

    pdf::InputFile& file_;
    std::uint64_t offset_ = 0;
    std::vector<char> block_;
    std::uint64_t blockOffset_ = 0;
    JpegHeader header_;
    bool hasExif_ = false;
    ExifTags exif_;
    std::map<unsigned, pdf::FileRange> pieces_;
    unsigned pieceCount_ = 0;
};

}  // namespace

std::optional<JpegHeader> JpegHeader::read(pdf::InputFile& file) {
    return Scanner(file).scan();
}

bool JpegHeader::isEmbeddable() const {
    const bool isHuffmanCoded = startOfFrame >= 0xC0 && startOfFrame <= 0xC2;
    return isHuffmanCoded && precision == 8 && (components == 1 || components == 3 || components == 4);
}

bool JpegHeader::isUnmarkedRgb() const {
    return components == 3 && !hasJfifMarker && !hasAdobeMarker && componentIds[0] == 'R' && componentIds[1] == 'G' &&
           componentIds[2] == 'B';
}

}  // namespace quillon
