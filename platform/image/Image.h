#pragma once

#include "pdf/write/PageProducer.h"

#include <QSizeF>
#include <QUrl>

#include <memory>

namespace quillon {

class Picture;

/// A raster picture in a file, as one page that shows it.
///
/// Loading reads only the headers: kind, size in pixels, resolution and orientation. The pixels are read when the
/// document is written, and are carried over as they are wherever PDF can hold their encoding (see `produce`). Of a
/// file with several pictures or frames it is the first. Immutable; may be used from any thread.
class Image final : public pdf::PageProducer {
public:
    /// Null when the file is not a regular readable file or no picture that the program can read, or when it has more
    /// than `maximumPixels` pixels or is too large for its decoder (see PictureDecoder).
    [[nodiscard]] static std::shared_ptr<const Image> initWithContentsOfURL(const QUrl& url);

    ~Image() override;

    /// Pictures with more pixels than this are refused.
    static constexpr qint64 maximumPixels = 600'000'000;

    /// Width and height in points as shown, that is with the orientation of the EXIF or TIFF tags applied: pixels × 72
    /// / resolution, with 72 pixels per inch where the file says none.
    ///
    /// Readers of PDF handle pages of 3 to 14,400 points. A picture beyond them is shown larger or smaller as a whole,
    /// so that it keeps its shape; only where one side is more than 4,800 times the other is the short side drawn
    /// wider.
    [[nodiscard]] QSizeF size() const;

    /// Of the size above, with the corner at the origin.
    [[nodiscard]] pdf::Rectangle mediaBox() const override;

    /// The path of the file.
    [[nodiscard]] std::string name() const override;

    /// JPEG files, the pixel data of PNG files without alpha or interlacing, and CCITT Group 4 strips of TIFF files are
    /// copied; all else is decoded and encoded again without loss. Nothing when the file has changed since it was
    /// loaded so that no pixels of it can be had, or when they are damaged from the start.
    [[nodiscard]] std::optional<std::string> produce(pdf::ObjectSink& sink) const override;

private:
    explicit Image(std::unique_ptr<const Picture> picture);

    std::unique_ptr<const Picture> picture_;
};

}  // namespace quillon
