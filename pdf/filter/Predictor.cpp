#include "pdf/filter/Predictor.h"

#include <algorithm>
#include <cstdlib>

namespace quillon::pdf {

namespace {

unsigned char paeth(unsigned char left, unsigned char above, unsigned char corner) {
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) return left;
    return toAbove <= toCorner ? above : corner;
}

/// Undoes one PNG row filter in place; `above` is empty for the first row.
void undoPngRow(int filter, std::string& out, std::size_t begin, std::size_t length, std::size_t pixelBytes) {
    const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(out[at]); };
    const bool hasAbove = begin >= length;
    if (filter == 0 || (filter == 2 && !hasAbove)) return;
    if (filter == 2) {
        // The one that tables are written with.
        char* const row = out.data() + begin;
        const char* const above = row - length;
        for (std::size_t i = 0; i < length; ++i) row[i] = static_cast<char>(row[i] + above[i]);
        return;
    }
    for (std::size_t i = 0; i < length; ++i) {
        const std::size_t at = begin + i;
        const unsigned char left = i >= pixelBytes ? byteAt(at - pixelBytes) : 0;
        const unsigned char above = hasAbove ? byteAt(at - length) : 0;
        const unsigned char corner = i >= pixelBytes && hasAbove ? byteAt(at - length - pixelBytes) : 0;
        unsigned prediction = 0;
        if (filter == 1) prediction = left;
        if (filter == 3) prediction = (left + above) / 2U;
        if (filter == 4) prediction = paeth(left, above, corner);
        out[at] = static_cast<char>(byteAt(at) + prediction);
    }
}

std::string undoPng(std::string_view data, std::size_t rowBytes, std::size_t pixelBytes) {
    std::string out;
    out.reserve(data.size());
    for (std::size_t at = 0; at < data.size(); at += rowBytes + 1) {
        const std::size_t begin = out.size();
        out += data.substr(at + 1, rowBytes);
        out.resize(begin + rowBytes);  // a last row that breaks off reads as zeros
        undoPngRow(data[at], out, begin, rowBytes, pixelBytes);
    }
    return out;
}

std::string undoTiff(std::string data, std::size_t rowBytes, std::size_t pixelBytes) {
    for (std::size_t at = 0; at < data.size(); ++at) {
        if (at % rowBytes < pixelBytes) continue;
        data[at] = static_cast<char>(data[at] + data[at - pixelBytes]);
    }
    return data;
}

std::size_t parameter(const Dictionary& parameters, std::string_view key, std::int64_t standard) {
    constexpr std::int64_t most = 1 << 20;
    return static_cast<std::size_t>(std::clamp<std::int64_t>(parameters[key].integer().value_or(standard), 1, most));
}

}  // namespace

std::string undoPrediction(const Dictionary& parameters, std::string data) {
    const std::size_t predictor = parameter(parameters, "Predictor", 1);
    const std::size_t bitsPerPixel = parameter(parameters, "Colors", 1) * parameter(parameters, "BitsPerComponent", 8);
    const std::size_t pixelBytes = (bitsPerPixel + 7) / 8;
    const std::size_t rowBytes = (bitsPerPixel * parameter(parameters, "Columns", 1) + 7) / 8;
    // A row cannot be longer than the data, whatever the parameters say: it would only be padding.
    if (predictor >= 10) return undoPng(data, std::min(rowBytes, std::max<std::size_t>(data.size(), 1)), pixelBytes);
    if (predictor == 2 && parameter(parameters, "BitsPerComponent", 8) == 8) {
        return undoTiff(std::move(data), rowBytes, pixelBytes);
    }
    return data;
}

}  // namespace quillon::pdf
