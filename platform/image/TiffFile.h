#pragma once

#include "pdf/io/InputFile.h"
#include "pdf/write/ObjectSink.h"
#include "platform/image/ExifTags.h"
#include "platform/image/Resolution.h"
#include "platform/image/TiffStream.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace quillon {

/// The first directory of a TIFF file, read through libtiff. For one reading on one thread.
class TiffFile final : private TiffStream {
public:
    /// Null when the file has no valid first directory. Reads no more than that.
    [[nodiscard]] static std::unique_ptr<TiffFile> open(std::shared_ptr<pdf::InputFile> file);

    [[nodiscard]] std::uint32_t width() const;   ///< pixels
    [[nodiscard]] std::uint32_t height() const;  ///< pixels
    [[nodiscard]] std::optional<Resolution> resolution() const;
    [[nodiscard]] Orientation orientation() const;
    [[nodiscard]] std::vector<char> profile() const;  ///< the ICC profile, empty when there is none

    /// Whether the pixels are black or white, one bit each, in strips, and libtiff knows their compression.
    [[nodiscard]] bool isBilevel() const;

    /// Of a bilevel picture: whether a pixel of value 0 is white.
    [[nodiscard]] bool isWhiteZero() const;

    /// Where the data of a bilevel picture lies that is one strip of CCITT Group 4; nothing for all others and when the
    /// strip is not wholly within the file.
    [[nodiscard]] std::optional<pdf::FileRange> groupFourStrip() const;

    /// Whether the bytes of the compressed data hold their first bit lowest.
    [[nodiscard]] bool hasReversedBits() const;

    /// A row of a bilevel picture, eight pixels a byte; to be called for each row in turn. Empty when the data ends or
    /// is damaged beyond the decoder's power. Valid until the next call.
    [[nodiscard]] std::span<unsigned char> readRow(std::uint32_t row);

private:
    explicit TiffFile(std::shared_ptr<pdf::InputFile> file);

    [[nodiscard]] std::uint64_t size() const override;
    [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<char> into) override;
    [[nodiscard]] std::size_t writeAt(std::uint64_t offset, std::span<const char> data) override;

    template <typename Value>
    [[nodiscard]] Value tag(std::uint32_t number) const;

    std::shared_ptr<pdf::InputFile> file_;
    std::vector<unsigned char> row_;
    Handle tiff_;
};

}  // namespace quillon
