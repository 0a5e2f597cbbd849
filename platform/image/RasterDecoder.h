#pragma once

#include "platform/image/RasterImage.h"

#include <QSize>

#include <memory>

namespace quillon {

/// One reading of the first picture of a file, on one thread.
class RasterDecoder {
public:
    /// The largest picture in memory, in bytes. A page of 60 × 40 cm at 600 pixels per inch in RGB takes 515 MB.
    static constexpr qint64 maximumBytes = qint64{512} << 20;

    virtual ~RasterDecoder() = default;

    /// In pixels, from the headers; empty for kinds that must be decoded to know it.
    [[nodiscard]] virtual QSize size() const = 0;

    /// Whether the headers are those of a picture, and of one that fits into `maximumBytes`.
    [[nodiscard]] virtual bool canDecode() const = 0;

    /// Null when the file is damaged.
    [[nodiscard]] virtual std::unique_ptr<RasterImage> decode() = 0;

    /// The picture as far as it is intact, the rest blank. Null when nothing of it is, or when the decoder cannot tell.
    [[nodiscard]] virtual std::unique_ptr<RasterImage> decodeBeginning() = 0;
};

}  // namespace quillon
