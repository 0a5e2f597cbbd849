#pragma once

#include "pdf/join/SourceCopies.h"

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Joins the layers of all sources (ISO 32000-2, 8.11.4), so that each is shown or hidden as it was. Layers that
/// nothing on a page that was taken belongs to are gone, but those of a source that is taken whole stay.
///
/// Of several configurations a source may have only the one that it opens with counts.
class LayerJoiner {
public:
    /// After the pages of a source were copied.
    void end(const SourceCopies& source);
    /// The value of the catalog's `OCProperties`; empty when there is no layer.
    [[nodiscard]] std::string text() const;

private:
    void takeStates(const SourceCopies& source, const Dictionary& configuration, const Array& layers);
    void takeIntents(const Object& value);

    /// Lists of the configuration, each the lists of all sources one after the other.
    struct List {
        std::string_view key;
        std::string values;
    };
    List order_{"Order", {}};
    std::array<List, 3> lists_{{{"AS", {}}, {"RBGroups", {}}, {"Locked", {}}}};
    std::string layers_;  // references
    std::string hidden_;
    std::set<std::string> intents_;
    std::string look_;  // further entries, of the first source
    bool isFirst_ = true;
};

}  // namespace quillon::pdf
