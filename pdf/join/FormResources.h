#pragma once

#include "pdf/join/SourceCopies.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// New names of fonts in the default resources of a form, by the old ones.
using FontNames = std::map<std::string, std::string, std::less<>>;

/// Joins the default resources of forms (ISO 32000-2, table 224). Fonts of a name that means another font already get a
/// new one. Of other resources, which the default appearances of fields do not name, the first of a name stays.
class FormResources {
public:
    /// Adds those of a source and returns the fonts that were renamed.
    [[nodiscard]] FontNames add(const SourceCopies& source, const Object& resources);
    /// The joined resources; empty when there are none.
    [[nodiscard]] std::string text() const;

private:
    struct Resource {
        std::string copied;
        std::string content;  // to compare
    };

    std::map<std::string, std::map<std::string, Resource, std::less<>>> categories_;
    std::string procedures_;
};

/// The default appearance `text` with its fonts renamed.
[[nodiscard]] std::string renamedFonts(std::string_view text, const FontNames& names);

}  // namespace quillon::pdf
