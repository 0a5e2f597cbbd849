#include "platform/pdf/MarkPainter.h"

#include "pdf/object/Object.h"
#include "pdf/write/FormResource.h"

#include <string>
#include <utility>

namespace quillon {

namespace {

std::string placed(const QPointF& origin) {
    if (origin.isNull()) return {};
    std::string text = "1 0 0 1 ";
    pdf::writeReal(text, origin.x());
    text += ' ';
    pdf::writeReal(text, origin.y());
    return text + " cm ";
}

/// Every page starts with black.
std::string filled(const Color& color) {
    std::string text;
    if (color.red == color.green && color.red == color.blue) {
        if (color.red == 0) return text;
        pdf::writeReal(text, color.red);
        return text + " g ";
    }
    for (const double component : {color.red, color.green, color.blue}) {
        pdf::writeReal(text, component);
        text += ' ';
    }
    return text + "rg ";
}

}  // namespace

void MarkPainter::add(std::vector<DrawingContext::Mark> marks) {
    for (const auto& mark : marks) ++uses_[mark.drawing.get()];
    pages_.push_back(std::move(marks));
}

std::vector<std::shared_ptr<const pdf::Painting>> MarkPainter::paintings() {
    std::vector<std::shared_ptr<const pdf::Painting>> paintings;
    paintings.reserve(pages_.size());
    for (auto& marks : pages_) {
        pdf::Painting painting;
        for (const auto& mark : marks) {
            if (pdf::PaintContent layer = layerOf(mark); !layer.empty()) painting.layers.push_back(std::move(layer));
        }
        marks.clear();  // not to hold what is drawn on a single page twice
        const bool empty = painting.layers.empty();
        paintings.push_back(empty ? nullptr : std::make_shared<const pdf::Painting>(std::move(painting)));
    }
    return paintings;
}

/// Marked as an artifact (ISO 32000-2, 14.8.2.2): in a tagged file it must not be read as part of the text.
pdf::PaintContent MarkPainter::layerOf(const DrawingContext::Mark& mark) {
    pdf::PaintContent drawn;
    if (uses_[mark.drawing.get()] > 1) {
        if (auto form = formOf(*mark.drawing)) drawn = {{"", std::move(form)}, {" Do", nullptr}};
    } else {
        drawn = mark.drawing->content();
    }
    if (drawn.empty() || mark.color.alpha <= 0) return {};
    pdf::PaintContent layer{{"/Artifact BMC q ", nullptr}};
    if (mark.color.alpha < 1) {
        layer.back().resource = opacity(mark.color.alpha);
        layer.push_back({" gs ", nullptr});
    }
    layer.back().operators += filled(mark.color) + placed(mark.origin);
    for (pdf::PaintPiece& piece : drawn) layer.push_back(std::move(piece));
    layer.push_back({" Q EMC", nullptr});
    return layer;
}

/// Null when nothing of the drawing would be seen.
std::shared_ptr<const pdf::PaintResource> MarkPainter::formOf(const Drawing& drawing) {
    const auto [place, isNew] = forms_.try_emplace(&drawing);
    if (isNew) {
        pdf::PaintContent content = drawing.content();
        if (!content.empty()) {
            place->second = std::make_shared<pdf::FormResource>(std::move(content), drawing.bounds());
        }
    }
    return place->second;
}

std::shared_ptr<const pdf::PaintResource> MarkPainter::opacity(double alpha) {
    auto& resource = opacities_[alpha];
    if (!resource) resource = std::make_shared<pdf::OpacityResource>(alpha);
    return resource;
}

}  // namespace quillon
