#include "platform/image/ExifTags.h"

#include "platform/image/ByteView.h"

#include <cstddef>

namespace quillon {

namespace {

constexpr unsigned orientationTag = 0x0112;
constexpr unsigned xResolutionTag = 0x011A;
constexpr unsigned yResolutionTag = 0x011B;
constexpr unsigned resolutionUnitTag = 0x0128;

constexpr unsigned byteType = 1;
constexpr unsigned shortType = 3;
constexpr unsigned longType = 4;
constexpr unsigned rationalType = 5;

constexpr std::size_t entryLength = 12;

unsigned integerOf(const ByteView& bytes, std::size_t entry) {
    switch (bytes.u16(entry + 2)) {
        case byteType:
            return bytes.u8(entry + 8);
        case shortType:
            return bytes.u16(entry + 8);
        case longType:
            return bytes.u32(entry + 8);
        default:
            return 0;
    }
}

double rationalOf(const ByteView& bytes, std::size_t entry) {
    if (bytes.u16(entry + 2) != rationalType) return 0;
    const std::size_t at = bytes.u32(entry + 8);
    const double denominator = bytes.u32(at + 4);
    return denominator == 0 ? 0 : bytes.u32(at) / denominator;
}

}  // namespace

ExifTags ExifTags::parse(std::span<const char> data) {
    const bool isLittleEndian = ByteView(data).startsWith("II");
    const ByteView bytes(data, isLittleEndian ? ByteView::Order::LittleEndian : ByteView::Order::BigEndian);
    if ((!isLittleEndian && !bytes.startsWith("MM")) || bytes.u16(2) != 42) return {};

    ExifTags tags;
    double horizontal = 0;
    double vertical = 0;
    unsigned unit = 2;  // the standard's default where the tag is missing
    const std::size_t directory = bytes.u32(4);
    const unsigned count = bytes.u16(directory);
    for (unsigned index = 0; index < count; ++index) {
        const std::size_t entry = directory + 2 + index * entryLength;
        if (!bytes.has(entry, entryLength)) break;
        switch (bytes.u16(entry)) {
            case orientationTag:
                tags.orientation = Orientation(integerOf(bytes, entry));
                break;
            case xResolutionTag:
                horizontal = rationalOf(bytes, entry);
                break;
            case yResolutionTag:
                vertical = rationalOf(bytes, entry);
                break;
            case resolutionUnitTag:
                unit = integerOf(bytes, entry);
                break;
            default:
                break;
        }
    }
    tags.resolution = Resolution::perTiffUnit(static_cast<int>(unit & 0xFFFF), horizontal, vertical);
    return tags;
}

}  // namespace quillon
