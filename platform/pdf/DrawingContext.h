#pragma once

namespace quillon {

class PDFPage;

/// Where a page is drawn while its document is written. One context serves one drawing of one page.
class DrawingContext {
public:
    /// Makes itself the current context of the thread for the time of its life.
    explicit DrawingContext(const PDFPage& page) noexcept;
    DrawingContext(const DrawingContext&) = delete;
    DrawingContext& operator=(const DrawingContext&) = delete;
    ~DrawingContext();

    /// The context that this thread draws into; null when nothing is being drawn.
    [[nodiscard]] static DrawingContext* current() noexcept;

    /// Carries the content of `page` over untouched. Only the page that the context was made for has content here; any
    /// other draws nothing.
    void drawContent(const PDFPage& page) noexcept { contentDrawn_ = contentDrawn_ || &page == &page_; }
    [[nodiscard]] bool contentDrawn() const noexcept { return contentDrawn_; }

private:
    const PDFPage& page_;
    DrawingContext* outer_;
    bool contentDrawn_ = false;
};

}  // namespace quillon
