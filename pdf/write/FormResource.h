#pragma once

#include "pdf/Geometry.h"
#include "pdf/write/Painting.h"

namespace quillon::pdf {

/// A form XObject (ISO 32000-2, 8.10) of painted content, for what stands on many pages.
class FormResource final : public PaintResource {
public:
    /// Nothing outside of `bounds` is shown.
    FormResource(PaintContent content, const Rectangle& bounds);

    [[nodiscard]] std::string_view category() const noexcept override { return "XObject"; }
    [[nodiscard]] std::uint32_t write(PaintWriter& writer) const override;

private:
    PaintContent content_;
    Rectangle bounds_;
};

/// Graphics state parameters (8.4.5) that make everything painted with them translucent.
class OpacityResource final : public PaintResource {
public:
    /// 0 invisible to 1 opaque.
    explicit OpacityResource(double alpha) noexcept : alpha_(alpha) {}

    [[nodiscard]] std::string_view category() const noexcept override { return "ExtGState"; }
    [[nodiscard]] std::uint32_t write(PaintWriter& writer) const override;

private:
    double alpha_;
};

}  // namespace quillon::pdf
