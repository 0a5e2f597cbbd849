#pragma once

#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace quillon {

/// Lays samples of 1, 2, 4, 8 or 16 bits one after another, the highest bit first and rows on whole bytes, as PDF has
/// them.
class SamplePacker {
public:
    explicit SamplePacker(int bits) : bits_(bits) {}

    /// `sample` is one of 16 bits, of which the highest are taken.
    void addSample(quint16 sample) {
        if (bits_ == 16) bytes_.push_back(static_cast<unsigned char>(sample >> 8));
        add(bits_ == 16 ? sample & 0xFFU : static_cast<unsigned>(sample >> (16 - bits_)), std::min(bits_, 8));
    }

    /// `value` fits into the bits.
    void addValue(unsigned value) { add(value, bits_); }

    /// The bytes of the row, valid until the next call. What is added next begins the next row.
    [[nodiscard]] const std::vector<unsigned char>& endRow() {
        if (usedBits_ > 0) add(0, 8 - usedBits_);
        row_.swap(bytes_);
        bytes_.clear();
        return row_;
    }

private:
    void add(unsigned value, int bits) {
        pending_ = pending_ << bits | value;
        usedBits_ += bits;
        if (usedBits_ < 8) return;
        bytes_.push_back(static_cast<unsigned char>(pending_));
        pending_ = 0;
        usedBits_ = 0;
    }

    int bits_;
    unsigned pending_ = 0;
    int usedBits_ = 0;
    std::vector<unsigned char> bytes_;
    std::vector<unsigned char> row_;
};

}  // namespace quillon
