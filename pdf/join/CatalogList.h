#pragma once

#include "pdf/join/SourceCopies.h"

#include <set>
#include <string>

namespace quillon::pdf {

/// A list of the catalog, such as `OutputIntents` or `AF`, that is joined from those of all sources, of equal elements
/// the first.
class CatalogList {
public:
    void add(const SourceCopies& source, const Object& list);
    /// Empty when the list is.
    [[nodiscard]] std::string text() const { return elements_.empty() ? std::string() : '[' + elements_ + ']'; }

private:
    std::string elements_;
    std::set<std::string> known_;
};

}  // namespace quillon::pdf
