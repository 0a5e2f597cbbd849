#include "pdf/write/ObjectPlaces.h"

#include "pdf/filter/FastDeflater.h"
#include "pdf/filter/Flate.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quillon::pdf {

namespace {

static_assert(std::endian::native == std::endian::little);

// The longest row has eleven bytes, that of a file below 1 TiB seven or eight.
__extension__ using LongWord = unsigned __int128;
using Word = std::uint64_t;

Word swapped(Word value) noexcept {
    return __builtin_bswap64(value);
}

LongWord swapped(LongWord value) noexcept {
    constexpr unsigned half = 64;
    return LongWord{swapped(static_cast<Word>(value))} << half | swapped(static_cast<Word>(value >> half));
}

/// The bytes of a row in the order of the file, of which only the first count. The fields are given as numbers; `place`
/// fits `width` bytes, 1 to 8.
template <class Bytes>
Bytes rowOf(std::uint64_t type, std::uint64_t place, std::uint64_t index, unsigned width) noexcept {
    const Bytes value = Bytes{type} << (8 * width + 16) | Bytes{place} << 16U | index;
    return swapped(static_cast<Bytes>(value << (8 * (sizeof(Bytes) - ObjectPlaces::rowBytes(width)))));
}

/// The differences of the single bytes, a borrow never going from one to the next.
template <class Bytes>
Bytes differences(Bytes bytes, Bytes less) noexcept {
    constexpr Bytes high = ~Bytes{0} / 0xff * 0x80;
    return ((bytes | high) - (less & ~high)) ^ ((bytes ^ ~less) & high);
}

}  // namespace

template <class Bytes>
std::string ObjectPlaces::predictedRowsOf(std::size_t begin, std::size_t end, unsigned width) const {
    constexpr std::uint64_t indexMask = 0xffff;
    const auto rowAt = [&](std::size_t number, std::uint64_t place) {
        if ((place & inStream) != 0) return rowOf<Bytes>(2, (place & ~inStream) >> 16U, place & indexMask, width);
        return rowOf<Bytes>(place != 0 ? 1 : 0, place, number == 0 ? indexMask : 0, width);
    };
    Bytes above = begin == 0 ? Bytes{0} : rowAt(begin - 1, places_[begin - 1]);
    std::string rows((end - begin) * (1 + rowBytes(width)) + sizeof(Bytes), '\0');
    char* to = rows.data();
    auto place = places_.begin() + static_cast<std::ptrdiff_t>(begin);
    for (std::size_t number = begin; number < end; ++number, ++place) {
        const Bytes row = rowAt(number, *place);
        const Bytes predicted = differences(row, above);
        *to++ = 2;  // predicted from above
        // What goes beyond the row is where the next is written.
        std::memcpy(to, &predicted, sizeof predicted);
        to += rowBytes(width);
        above = row;
    }
    rows.resize(rows.size() - sizeof(Bytes));
    return rows;
}

std::string ObjectPlaces::predictedRows(std::size_t begin, std::size_t end, unsigned width) const {
    return rowBytes(width) <= sizeof(Word) ? predictedRowsOf<Word>(begin, end, width)
                                           : predictedRowsOf<LongWord>(begin, end, width);
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
