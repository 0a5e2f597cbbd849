#pragma once

#include <QSizeF>
#include <QUrl>
#include <memory>

#include "pdf/write/PageProducer.h"

namespace quillon {

/// A raster picture in a file, as one page that shows it.
///
/// Loading reads only the headers: kind, size in pixels, resolution and orientation. The pixels are read when the document
/// is written, and are carried over as they are wherever PDF can hold their encoding (see `produce`).
/// Immutable; may be used from any thread.
class Image final : public pdf::PageProducer {
public:
    /// Null when the file is not a regular readable file or no picture that the program can read, or when it has more than
    /// `maximumPixels` pixels.
    [[nodiscard]] static std::shared_ptr<const Image> initWithContentsOfURL(const QUrl& url);

    /// Pictures with more pixels than this are refused.
    static constexpr qint64 maximumPixels = 600'000'000;

    /// Width and height in points as shown, that is with the orientation of the EXIF or TIFF tags applied: pixels × 72 /
    /// resolution, with 72 pixels per inch where the file says none.
    [[nodiscard]] QSizeF size() const;

    [[nodiscard]] pdf::Rectangle mediaBox() const override;
    [[nodiscard]] std::optional<std::string> produce(pdf::ObjectSink& sink) const override;
};

}  // namespace quillon
