#pragma once

#include "pdf/join/FieldTree.h"
#include "pdf/read/DestinationResolver.h"
#include "pdf/write/SourcePlan.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// What the joiners must know of a source before its pages are copied.
struct SourceSurvey {
    bool isWhole = false;           ///< every page of the source is taken
    DestinationNames destinations;  ///< only if they are asked for
    FieldTree fields;               ///< of the form, likewise

    /// What is asked for of a source.
    struct Wishes {
        bool destinations = false;
        bool fields = false;
    };
    /// Reads a document, which must not be locked.
    [[nodiscard]] static SourceSurvey read(const SourcePlan& plan, SourceDocument& document, Wishes wishes);

    /// Reads what `explicitText` gives, unless that was done before and the file has not been scanned since.
    void readTexts(ObjectReader& reader);
    /// The value of the destination at `index` of `destinations.tree`, or behind those of `destinations.old`, if it is
    /// a short array of the source that names its page; otherwise empty, as before `readTexts`.
    [[nodiscard]] std::string_view explicitText(std::size_t index) const;

private:
    struct Span {
        std::size_t begin = 0;
        std::size_t length = 0;
    };

    std::string texts_;
    std::vector<Span> spans_;  // of the texts
    bool wereRecovered_ = false;
};

}  // namespace quillon::pdf
