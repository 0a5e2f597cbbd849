#pragma once

#include "pdf/read/OutlineReader.h"
#include "pdf/write/DocumentWriter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillon {

class PDFOutline;
class PDFPage;

/// The outline of a file as a tree of nodes below a root; `pageAt` gives the pages that they lead to by their
/// zero-based places in the file. Null when the file has none. `source` must be unlocked.
[[nodiscard]] std::shared_ptr<PDFOutline> readOutlineTree(
    const std::shared_ptr<pdf::Source>& source, std::uint32_t opening,
    const std::function<std::shared_ptr<PDFPage>(std::uint32_t)>& pageAt);

/// The nodes below `root`, each in front of its children; `placeOf` tells where a page stands in the document, if it
/// does. A node stands once, even if it was inserted in several places or into itself.
[[nodiscard]] std::vector<pdf::OutlineEntry> outlineEntries(
    const PDFOutline& root, const std::function<std::optional<std::size_t>(const PDFPage&)>& placeOf);

}  // namespace quillon
