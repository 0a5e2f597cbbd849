#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace quillon {

/// Compresses rows of black and white pixels for /CCITTFaxDecode with /K -1 (CCITT Group 4).
class FaxEncoder {
public:
    /// In pixels.
    FaxEncoder(int width, int height);
    FaxEncoder(const FaxEncoder&) = delete;
    FaxEncoder& operator=(const FaxEncoder&) = delete;
    ~FaxEncoder();

    /// Eight pixels a byte, the first in the highest bit, 1 for black. To be called `height` times.
    void write(std::span<const unsigned char> row);

    /// The encoded rows with the end-of-block mark; nothing may be written afterwards.
    [[nodiscard]] std::vector<char> finish();

private:
    class File;

    std::unique_ptr<File> file_;
    std::uint32_t nextRow_ = 0;
};

}  // namespace quillon
