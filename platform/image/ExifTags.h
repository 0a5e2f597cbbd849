#pragma once

#include "platform/image/Resolution.h"

#include <optional>
#include <span>

namespace quillon {

/// The orientation of a picture, with the numbers that EXIF and TIFF share: what row 0 and column 0 of the stored
/// pixels are on the picture as it is to be seen. 1 is upright; 5 to 8 exchange width and height.
class Orientation {
public:
    Orientation() = default;
    /// Numbers outside 1 … 8 are taken for 1, as a file without the tag.
    explicit Orientation(unsigned number) noexcept : number_(number >= 1 && number <= 8 ? number : 1) {}

    [[nodiscard]] unsigned number() const noexcept { return number_; }
    [[nodiscard]] bool exchangesAxes() const noexcept { return number_ >= 5; }

private:
    unsigned number_ = 1;
};

/// The EXIF tags that say how a picture is to be shown.
struct ExifTags {
    Orientation orientation;
    std::optional<Resolution> resolution;

    /// `bytes` is EXIF data from its byte order mark on. Whatever is damaged reads as absent.
    [[nodiscard]] static ExifTags parse(std::span<const char> bytes);
};

}  // namespace quillon
