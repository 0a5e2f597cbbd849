#pragma once

#include "platform/pdf/Color.h"
#include "platform/pdf/Drawing.h"

#include <QPointF>

#include <any>
#include <memory>
#include <utility>
#include <vector>

namespace quillon {

class PDFPage;

/// Where a page is drawn while its document is written. One context serves one drawing of one page.
class DrawingContext {
public:
    /// A drawing, placed on the page.
    struct Mark {
        std::shared_ptr<const Drawing> drawing;
        QPointF origin;
        Color color;
    };

    /// Makes itself the current context of the thread for the time of its life. `store` outlives it, see there.
    DrawingContext(const PDFPage& page, std::any& store) noexcept;
    DrawingContext(const DrawingContext&) = delete;
    DrawingContext& operator=(const DrawingContext&) = delete;
    ~DrawingContext();

    /// The context that this thread draws into; null when nothing is being drawn.
    [[nodiscard]] static DrawingContext* current() noexcept;

    /// Carries the content of `page` over untouched. Only the page that the context was made for has content here; any
    /// other draws nothing.
    void drawContent(const PDFPage& page) noexcept { contentDrawn_ = contentDrawn_ || &page == &page_; }
    [[nodiscard]] bool contentDrawn() const noexcept { return contentDrawn_; }

    // The graphics state is the fill colour, black at first. What is saved and never restored ends with the page; to
    // restore what was not saved does nothing.
    void saveGraphicsState() { savedColors_.push_back(color_); }
    void restoreGraphicsState();
    void setFillColor(const Color& color) noexcept { color_ = color; }

    /// Draws over everything so far, with the origin of `drawing` at a point of the page's own user space.
    void draw(std::shared_ptr<const Drawing> drawing, QPointF origin);
    /// What was drawn over the page's content, from the bottom up. The context is left with nothing.
    [[nodiscard]] std::vector<Mark> takeMarks() noexcept { return std::exchange(marks_, {}); }

    /// What those who draw keep for the other pages of the document: one thing for all contexts of one writing.
    [[nodiscard]] std::any& store() noexcept { return store_; }

private:
    const PDFPage& page_;
    std::any& store_;
    DrawingContext* outer_;
    bool contentDrawn_ = false;
    Color color_;
    std::vector<Color> savedColors_;
    std::vector<Mark> marks_;
};

}  // namespace quillon
