#include "pdf/write/ObjectPlaces.h"

#include "pdf/filter/FastDeflater.h"
#include "pdf/filter/Flate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace quillon::pdf {

namespace {

static_assert(std::endian::native == std::endian::little);

/// The bytes of a row, of which only the first count: the longest has eleven.
using Row = std::array<std::uint64_t, 2>;

/// The fields are given as numbers; `place` fits `width` bytes, 1 to 8.
Row rowOf(std::uint64_t type, std::uint64_t place, std::uint64_t index, unsigned width) noexcept {
    __extension__ using Wide = unsigned __int128;
    const Wide value = Wide{type} << (8 * width + 16) | Wide{place} << 16U | index;
    const Wide high = value << (8 * (sizeof(Row) - ObjectPlaces::rowBytes(width)));
    return {__builtin_bswap64(static_cast<std::uint64_t>(high >> 64U)),
            __builtin_bswap64(static_cast<std::uint64_t>(high))};
}

/// The differences of eight bytes each, a borrow never going from one to the next.
std::uint64_t differences(std::uint64_t bytes, std::uint64_t less) noexcept {
    constexpr std::uint64_t high = 0x8080808080808080;
    return ((bytes | high) - (less & ~high)) ^ ((bytes ^ ~less) & high);
}

}  // namespace

std::string ObjectPlaces::predictedRows(std::size_t begin, std::size_t end, unsigned width) const {
    constexpr std::uint64_t indexMask = 0xffff;
    const auto rowAt = [&](std::size_t number, std::uint64_t place) {
        if ((place & inStream) != 0) return rowOf(2, (place & ~inStream) >> 16U, place & indexMask, width);
        return rowOf(place != 0 ? 1 : 0, place, number == 0 ? indexMask : 0, width);
    };
    Row above = begin == 0 ? Row{} : rowAt(begin - 1, places_[begin - 1]);
    std::string rows((end - begin) * (1 + rowBytes(width)) + sizeof(Row), '\0');
    char* to = rows.data();
    auto place = places_.begin() + static_cast<std::ptrdiff_t>(begin);
    for (std::size_t number = begin; number < end; ++number, ++place) {
        const Row row = rowAt(number, *place);
        const Row predicted{differences(row[0], above[0]), differences(row[1], above[1])};
        *to++ = 2;  // predicted from above
        // What goes beyond the row is where the next is written.
        std::memcpy(to, predicted.data(), sizeof predicted);
        to += rowBytes(width);
        above = row;
    }
    rows.resize(rows.size() - sizeof(Row));
    return rows;
}

/// Some predicted rows from all over.
std::string ObjectPlaces::sample(unsigned width) const {
    constexpr std::size_t stretches = 16;
    constexpr std::size_t stretchRows = 512;
    const std::size_t count = places_.size();
    std::string sample;
    for (std::size_t i = 0; i < stretches; ++i) {
        const std::size_t begin = count / stretches * i;
        sample += predictedRows(begin, std::min(count, begin + stretchRows), width);
    }
    return sample;
}

/// At one go: parts would each end with an empty stored block, which not every reader finds behind an end code that is
/// much shorter than others.
std::string ObjectPlaces::deflatedRows(unsigned width) const {
    constexpr std::size_t fewRows = 8192;
    const std::size_t count = places_.size();
    std::string deflated;
    if (count <= fewRows) {
        Deflater(1).deflate(predictedRows(0, count, width), deflated);
    } else {
        FastDeflater().deflate(predictedRows(0, count, width), DeflateCodes(sample(width)), deflated);
    }
    return deflated;
}

}  // namespace quillon::pdf
