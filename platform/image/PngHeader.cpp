#include "platform/image/PngHeader.h"

#include "platform/image/ByteView.h"
#include "platform/image/FileBytes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

namespace quillon {

namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t signatureLength = 8;
constexpr std::uint64_t chunkOverhead = 12;  // length, type and checksum
constexpr std::size_t headerLength = 13;
constexpr std::uint64_t mostExifBytes = 1 << 20;

// Four times what the largest allowed picture needs in the chunks of 8 KiB that libpng writes; a crafted file of
// millions of empty chunks is not followed to its end.
constexpr std::size_t mostChunks = 1'000'000;

bool isAllowed(PngHeader::ColorType colorType, int bitDepth) {
    switch (colorType) {
        case PngHeader::ColorType::Gray:
            return bitDepth == 1 || bitDepth == 2 || bitDepth == 4 || bitDepth == 8 || bitDepth == 16;
        case PngHeader::ColorType::Palette:
            return bitDepth == 1 || bitDepth == 2 || bitDepth == 4 || bitDepth == 8;
        case PngHeader::ColorType::Rgb:
        case PngHeader::ColorType::GrayAlpha:
        case PngHeader::ColorType::Rgba:
            return bitDepth == 8 || bitDepth == 16;
    }
    return false;
}

class Scanner {
public:
    explicit Scanner(pdf::InputFile& file) : file_(file) {}

    std::optional<PngHeader> scan() {
        if (!readHeader()) return std::nullopt;
        std::uint64_t offset = signatureLength + chunkOverhead + headerLength;
        for (std::size_t count = 0; count < mostChunks; ++count) {
            std::array<char, 8> bytes{};
            if (file_.readAt(offset, bytes) != bytes.size()) break;
            const pdf::FileRange data{offset + bytes.size(), ByteView(bytes).u32(0)};
            const std::string_view type(bytes.data() + 4, 4);
            offset += chunkOverhead + data.length;
            if (offset > file_.size()) {
                noteCutChunk(type, data.offset);
                break;
            }
            if (type == "IEND"sv) {
                header_.isComplete = isInOrder_ && startsAsZlibStream();
                break;
            }
            readChunk(type, data);
        }
        return header_;
    }

private:
    bool readHeader() {
        const auto bytes = readExactly(file_, 0, signatureLength + chunkOverhead + headerLength);
        if (!bytes || !ByteView(*bytes).startsWith("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"sv)) return false;
        const ByteView header(std::span<const char>(*bytes).subspan(signatureLength + 8));
        constexpr std::uint32_t mostPixels = std::numeric_limits<int>::max();
        if (header.u32(0) - 1 >= mostPixels || header.u32(4) - 1 >= mostPixels) return false;
        header_.width = static_cast<int>(header.u32(0));
        header_.height = static_cast<int>(header.u32(4));
        header_.bitDepth = header.u8(8);
        header_.colorType = static_cast<PngHeader::ColorType>(header.u8(9));
        header_.isInterlaced = header.u8(12) != 0;
        const bool hasKnownMethods = header.u8(10) == 0 && header.u8(11) == 0 && header.u8(12) <= 1;
        return hasKnownMethods && isAllowed(header_.colorType, header_.bitDepth);
    }

    void readChunk(std::string_view type, const pdf::FileRange& data) {
        if (type == "IDAT"sv) {
            isInOrder_ = isInOrder_ && (header_.pixelData.empty() || previousIsPixelData_);
            if (data.length > 0) header_.pixelData.push_back(data);
            previousIsPixelData_ = true;
            return;
        }
        previousIsPixelData_ = false;
        if (type == "PLTE"sv) {
            if (data.length <= 768) header_.palette = read(data);
        } else if (type == "tRNS"sv) {
            if (data.length <= 256) header_.transparency = read(data);
        } else if (type == "iCCP"sv) {
            header_.profile = data;
        } else if (type == "pHYs"sv) {
            if (data.length == 9) readPhysicalSize(read(data));
        } else if (type == "eXIf"sv) {
            if (data.length <= mostExifBytes) readExif(read(data));
        }
    }

    std::vector<char> read(const pdf::FileRange& range) {
        return readExactly(file_, range.offset, range.length).value_or(std::vector<char>());
    }

    void readPhysicalSize(const std::vector<char>& bytes) {
        constexpr unsigned metre = 1;
        const ByteView chunk(bytes);
        if (chunk.u8(8) != metre) return;
        if (const auto said = Resolution::perMetre(chunk.u32(0), chunk.u32(4))) header_.resolution = said;
    }

    void readExif(const std::vector<char>& bytes) {
        const ExifTags exif = ExifTags::parse(bytes);
        header_.orientation = exif.orientation;
        if (!header_.resolution) header_.resolution = exif.resolution;
    }

    // What is left of the pixels is worth showing.
    void noteCutChunk(std::string_view type, std::uint64_t offset) {
        if (type == "IDAT"sv && offset < file_.size()) header_.pixelData.push_back({offset, file_.size() - offset});
    }

    bool startsAsZlibStream() {
        std::array<char, 2> bytes{};
        std::size_t count = 0;
        for (const pdf::FileRange& range : header_.pixelData) {
            const auto wanted = std::min<std::uint64_t>(bytes.size() - count, range.length);
            count += file_.readAt(range.offset, std::span(bytes).subspan(count, static_cast<std::size_t>(wanted)));
            if (count == bytes.size()) break;
        }
        const unsigned head = ByteView(bytes).u16(0);
        const bool isDeflate = (head >> 8 & 0x0F) == 8;
        const bool wantsDictionary = (head & 0x20) != 0;
        return count == bytes.size() && isDeflate && head % 31 == 0 && !wantsDictionary;
    }

    pdf::InputFile& file_;
    PngHeader header_;
    bool isInOrder_ = true;
    bool previousIsPixelData_ = false;
};

}  // namespace

std::optional<PngHeader> PngHeader::read(pdf::InputFile& file) {
    return Scanner(file).scan();
}

}  // namespace quillon
