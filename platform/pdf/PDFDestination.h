#pragma once

#include <QPointF>

#include <memory>
#include <string>

namespace quillon {

class PDFPage;

/// A point on a page, in points of the page's user space; with no page, a point alone.
class PDFDestination {
public:
    PDFDestination(std::shared_ptr<PDFPage> page, QPointF atPoint);
    /// A destination of a file, which may show its page otherwise than with a point in the corner: `view` is the text
    /// of what stands behind the page (ISO 32000-2, 12.3.2.2), `atPoint` what it says of a point.
    PDFDestination(std::shared_ptr<PDFPage> page, QPointF atPoint, std::string view);

    [[nodiscard]] const std::shared_ptr<PDFPage>& page() const noexcept { return page_; }
    [[nodiscard]] QPointF point() const noexcept { return point_; }
    /// How the page is shown, as PDF text.
    [[nodiscard]] const std::string& view() const noexcept { return view_; }

private:
    std::shared_ptr<PDFPage> page_;
    QPointF point_;
    std::string view_;
};

}  // namespace quillon
