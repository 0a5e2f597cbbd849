#pragma once

#include "pdf/read/SourcePage.h"
#include "platform/image/Image.h"

#include <QRectF>

#include <memory>
#include <optional>

namespace quillon {

/// The page boundaries of ISO 32000-2, 14.11.2 that the program asks for.
enum class PDFDisplayBox { MediaBox, CropBox };

/// One page: of a file, made from a picture, or blank. A handle; nothing is read or copied until it is asked for or
/// written. Not thread-safe: a page is used by one thread at a time.
class PDFPage {
public:
    /// A blank page. Written behind another page it takes that page's media box and rotation, otherwise 612 × 792
    /// points.
    PDFPage();

    /// `initWithImage:`: a page that shows `image` and has its size.
    explicit PDFPage(std::shared_ptr<const Image> image);

    PDFPage(const PDFPage&) = delete;
    PDFPage& operator=(const PDFPage&) = delete;
    virtual ~PDFPage();

    /// Draws the page into the current DrawingContext. Called by the writer once for each time that the page stands in
    /// the document, in page order, on the writing thread. The base class carries the page's own content over
    /// untouched.
    virtual void drawWithBox(PDFDisplayBox box);

    /// The box in points of the page's own user space. A missing crop box is the media box, a missing or unusable media
    /// box 612 × 792.
    [[nodiscard]] QRectF boundsForBox(PDFDisplayBox box) const;

    /// Degrees clockwise: 0, 90, 180 or 270.
    [[nodiscard]] int rotation() const;

private:
    friend class PDFDocument;

    std::optional<pdf::SourcePage> source_;  // a page of a file
    std::shared_ptr<const Image> image_;     // or of a picture; neither: blank
};

}  // namespace quillon
