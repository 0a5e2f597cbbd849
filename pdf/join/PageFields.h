#pragma once

#include "pdf/join/FieldTree.h"
#include "pdf/read/SourceDocument.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// The fields that are annotations of pages.
class PageFields {
public:
    /// Indexes of fields.
    using Fields = std::vector<std::uint32_t>;

    PageFields() = default;
    /// Looks at the pages of which `taken`, by their indexes, says so. Fields that say they belong below one of `tree`
    /// and are missing there are added to it, in the order of the pages in the source.
    PageFields(SourceDocument& document, FieldTree& tree, const std::vector<bool>& taken);

    /// Those of the page at an index; null when it has none. Pages that share a list of annotations share the fields.
    [[nodiscard]] std::shared_ptr<const Fields> on(std::size_t page) const {
        return page < pages_.size() ? pages_[page] : nullptr;
    }

private:
    /// Of lists and of pages, by object number.
    using Known = std::unordered_map<std::uint32_t, std::shared_ptr<const Fields>>;

    [[nodiscard]] static std::shared_ptr<const Fields> look(SourceDocument& document, FieldTree& tree,
                                                            const PageTree::Page& page, Known& known, bool adopts);

    std::vector<std::shared_ptr<const Fields>> pages_;
};

}  // namespace quillon::pdf
