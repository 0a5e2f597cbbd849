#pragma once

#include "pdf/read/DestinationResolver.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillon::pdf {

/// A node of a document's outline (ISO 32000-2, 12.3.3).
struct OutlineItem {
    std::string title;                       ///< a PDF text string
    std::uint32_t depth = 0;                 ///< 0 at the top level
    bool open = false;                       ///< whether its children are shown
    std::optional<Destination> destination;  ///< of a node that leads to a page of the document
    std::string action;                      ///< what else it does: the text of an action of the file; empty if nothing
    std::string look;                        ///< its colour and style, the entries C and F as text
};

/// The outline of `document`, every node behind its parent. Nothing when it has none. Loops, nodes that stand in it
/// twice and what is damaged are left out; sizes are bounded by Limits.h.
[[nodiscard]] std::optional<std::vector<OutlineItem>> readOutline(SourceDocument& document);

}  // namespace quillon::pdf
