#pragma once

#include "pdf/join/DestinationTable.h"
#include "pdf/join/FieldTree.h"
#include "pdf/join/PageFields.h"
#include "pdf/read/DestinationResolver.h"
#include "pdf/write/SourcePlan.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// What the joiners must know of a source before its pages are copied.
struct SourceSurvey {
    bool isWhole = false;           ///< every page of the source is taken
    DestinationTable destinations;  ///< only if they are asked for
    FieldTree fields;               ///< of the form, likewise
    PageFields pageFields;          ///< likewise, of the pages that are taken

    /// What is asked for of a source.
    struct Wishes {
        bool destinations = false;
        bool fields = false;
    };
    /// Reads a document, which must not be locked.
    [[nodiscard]] static SourceSurvey read(const SourcePlan& plan, SourceDocument& document, Wishes wishes);

    /// Reads what `explicitDestination` gives, unless that was done before and the file has not been scanned since.
    void readExplicit(ObjectReader& reader);
    /// The value of the destination at `place`, if it is a short array that names its page by a reference of the
    /// source; nothing of any other, and before `readExplicit`.
    [[nodiscard]] std::optional<ExplicitDestination> explicitDestination(std::size_t place) const;

private:
    struct Explicit {
        Reference page;  // of number 0: nothing
        std::uint32_t begin = 0;
        std::uint32_t length = 0;
    };

    std::string texts_;  // of what follows the pages
    std::vector<Explicit> explicit_;
    bool wereRecovered_ = false;
};

}  // namespace quillon::pdf
