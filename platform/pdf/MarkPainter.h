#pragma once

#include "platform/pdf/DrawingContext.h"

#include <cstddef>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quillon {

/// Turns what was drawn over the pages of a document into what the engine paints. What is drawn more than once, such as
/// the same line of text on every page, becomes a form that is written once.
class MarkPainter {
public:
    /// The marks of the next page.
    void add(std::vector<DrawingContext::Mark> marks);

    /// The painting of each page, in their order, null where nothing was drawn. To be called once, after all pages.
    [[nodiscard]] std::vector<std::shared_ptr<const pdf::Painting>> paintings();

private:
    [[nodiscard]] pdf::PaintContent layerOf(const DrawingContext::Mark& mark);
    [[nodiscard]] std::shared_ptr<const pdf::PaintResource> formOf(const Drawing& drawing);
    [[nodiscard]] std::shared_ptr<const pdf::PaintResource> opacity(double alpha);

    std::vector<std::vector<DrawingContext::Mark>> pages_;
    std::unordered_map<const Drawing*, std::size_t> uses_;
    std::unordered_map<const Drawing*, std::shared_ptr<const pdf::PaintResource>> forms_;
    std::map<double, std::shared_ptr<const pdf::PaintResource>> opacities_;
};

}  // namespace quillon
