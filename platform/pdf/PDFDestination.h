#pragma once

#include <QPointF>

#include <memory>

namespace quillon {

class PDFPage;

/// A point on a page, in points of the page's user space; with no page, a point alone.
class PDFDestination {
public:
    PDFDestination(std::shared_ptr<PDFPage> page, QPointF atPoint);

    [[nodiscard]] const std::shared_ptr<PDFPage>& page() const noexcept { return page_; }
    [[nodiscard]] QPointF point() const noexcept { return point_; }

private:
    std::shared_ptr<PDFPage> page_;
    QPointF point_;
};

}  // namespace quillon
