#pragma once

#include "pdf/join/SourceCopies.h"

#include <cstdint>
#include <unordered_set>

namespace quillon::pdf {

/// How the layers of a source stand in the list that readers show (ISO 32000-2, 8.11.4.3, Order), without those that
/// are not in the output and the headings that they leave without any layer. What stood below a layer that is gone
/// stands below a heading with its name.
class LayerOrder {
public:
    /// `layers`: the object numbers of those in the output.
    LayerOrder(const SourceCopies& source, const std::unordered_set<std::uint32_t>& layers)
        : source_(source), layers_(layers) {}

    /// What is left of `order`, with references of the source; empty when there is no layer.
    [[nodiscard]] Array of(const Object& order);

private:
    [[nodiscard]] Array living(const Array& list, int depth);
    [[nodiscard]] static Object below(Array list, const Object& gone);

    const SourceCopies& source_;
    const std::unordered_set<std::uint32_t>& layers_;
    std::uint64_t visits_ = 0;  // places of lists that were read, as often as they were
};

}  // namespace quillon::pdf
