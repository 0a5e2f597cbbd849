#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace quillon::pdf {

/// Gives objects their numbers and knows where each is in the file being written: the contents of its cross-reference
/// stream (ISO 32000-2, 7.5.8).
class ObjectPlaces {
public:
    /// The number that `reserve` gives next; one above the highest.
    [[nodiscard]] std::uint32_t next() const noexcept { return static_cast<std::uint32_t>(places_.size()); }
    /// A number of an object, which reads as null until it has a place.
    std::uint32_t reserve() {
        places_.push_back(0);
        return next() - 1;
    }
    /// `offset` in bytes from the beginning of the file, above 0.
    void setInFile(std::uint32_t number, std::uint64_t offset) { places_[number] = offset; }
    /// At `index`, less than 65,536, of the object stream with the number `stream`.
    void setInStream(std::uint32_t number, std::uint32_t stream, std::size_t index) {
        places_[number] = inStream | std::uint64_t{stream} << 16U | index;
    }

    /// For each number a row of three fields: its type in one byte, the place in `width` bytes, 1 to 8, and an index or
    /// the generation in two. Each row is predicted from the one above (PNG predictor 12), and all are deflated.
    [[nodiscard]] std::string deflatedRows(unsigned width) const;
    [[nodiscard]] static constexpr std::size_t rowBytes(unsigned width) noexcept { return 3U + width; }

private:
    [[nodiscard]] std::string sample(unsigned width) const;
    [[nodiscard]] std::string predictedRows(std::size_t begin, std::size_t end, unsigned width) const;
    template <class Bytes>
    [[nodiscard]] std::string predictedRowsOf(std::size_t begin, std::size_t end, unsigned width) const;

    static constexpr std::uint64_t inStream = std::uint64_t{1} << 63U;

    // Of each number: an offset in the file, or with `inStream` set, an object stream's number in the upper bits and an
    // index in the lower 16.
    std::deque<std::uint64_t> places_{0};  // never moved, since it is large
};

}  // namespace quillon::pdf
