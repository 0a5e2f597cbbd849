#include "pdf/write/ObjectPlaces.h"

#include "pdf/filter/FastDeflater.h"
#include "pdf/filter/Flate.h"
#include "pdf/filter/Predictor.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quillon::pdf {

namespace {

static_assert(std::endian::native == std::endian::little);

/// Writes `value` in `bytes` bytes, 1 to 8, the highest first. What stands behind them, up to eight bytes in all, is
/// overwritten.
void putBigEndian(char* out, std::uint64_t value, unsigned bytes) {
    const std::uint64_t turned = __builtin_bswap64(value << (64 - 8 * bytes));
    std::memcpy(out, &turned, sizeof turned);
}

}  // namespace

std::string ObjectPlaces::rows(std::size_t begin, std::size_t end, unsigned width) const {
    constexpr std::uint64_t indexMask = 0xffff;
    std::string rows((end - begin) * rowBytes(width) + sizeof(std::uint64_t), '\0');
    char* row = rows.data();
    auto place = places_.begin() + static_cast<std::ptrdiff_t>(begin);
    for (std::size_t number = begin; number < end; ++number, ++place, row += rowBytes(width)) {
        const bool packed = (*place & inStream) != 0;
        putBigEndian(row, packed ? 2 : *place != 0 ? 1 : 0, 1);
        putBigEndian(row + 1, packed ? (*place & ~inStream) >> 16U : *place, width);
        putBigEndian(row + 1 + width, packed ? *place & indexMask : number == 0 ? indexMask : 0, 2);
    }
    rows.resize((end - begin) * rowBytes(width));
    return rows;
}

std::string ObjectPlaces::predictedRows(std::size_t begin, std::size_t end, unsigned width) const {
    if (begin == 0) return predictUp(rows(begin, end, width), rowBytes(width));
    // Of the row above only what it predicts is wanted.
    return predictUp(rows(begin - 1, end, width), rowBytes(width)).substr(1 + rowBytes(width));
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
