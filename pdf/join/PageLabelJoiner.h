#pragma once

#include "pdf/join/SourceCopies.h"
#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quillon::pdf {

/// Joins the labels of pages (ISO 32000-2, 12.4.2): each page keeps the one it had. Pages of a source without labels
/// have the numbers that they had there, since that is what such a source calls them itself; pages that come from no
/// document have none.
class PageLabelJoiner {
public:
    explicit PageLabelJoiner(std::size_t outputPages) : labels_(outputPages) {}

    /// While a source is being copied.
    void take(const SourceCopies& source);
    /// The reference of the tree; empty when no page has a label.
    [[nodiscard]] std::string write(ObjectOutput& output, const PageTreeWriter& pages) const;

private:
    struct Label {
        std::string look;  // entries besides the number
        std::int64_t number = 0;
    };

    std::vector<Label> labels_;  // by page of the output
};

}  // namespace quillon::pdf
