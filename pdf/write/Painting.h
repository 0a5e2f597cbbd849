#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

class PaintWriter;

/// A resource that painted content names (ISO 32000-2, 7.8.3): a font, a form, a graphics state. It is written once
/// for a document, however many pages name it, when the first of them is written; everything has been painted by then.
class PaintResource {
public:
    PaintResource() = default;
    PaintResource(const PaintResource&) = delete;
    PaintResource& operator=(const PaintResource&) = delete;
    virtual ~PaintResource() = default;

    /// Where it stands in a resource dictionary: Font, XObject or ExtGState.
    [[nodiscard]] virtual std::string_view category() const noexcept = 0;
    /// Writes it and what it needs. Returns its object number.
    [[nodiscard]] virtual std::uint32_t write(PaintWriter& writer) const = 0;
};

/// Operators with the name of a resource behind them, which is known only when the page is written, since it must not
/// clash with those that the page has.
struct PaintPiece {
    std::string operators;
    std::shared_ptr<const PaintResource> resource;  ///< null: no name
};
using PaintContent = std::vector<PaintPiece>;

/// What is painted over a page, from the bottom up. Each layer starts with the graphics state of an empty page, in
/// default user space, and must leave it as it was. Equal layers of several pages are written once.
struct Painting {
    std::vector<PaintContent> layers;
};

}  // namespace quillon::pdf
