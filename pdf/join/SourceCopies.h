#pragma once

#include "pdf/write/SourceCopier.h"
#include "pdf/write/SourcePlan.h"

#include <cstddef>

namespace quillon::pdf {

/// A source whose pages are being copied, as those see it that join what belongs to the documents.
struct SourceCopies {
    const SourcePlan& plan;
    SourceDocument& document;
    SourceCopier& copier;
    const Dictionary& catalog;  ///< of the source
    std::size_t ordinal;        ///< counted from 1 in the order of the sources
    bool isBase;
    bool isWhole;  ///< every page of the source is taken

    /// A value of the source as text of the output, references rewritten to the first copies.
    [[nodiscard]] std::string copied(const Object& value) const {
        std::string text;
        std::string out;
        value.write(text);
        copier.copyValue(text, nullptr, out);
        return out;
    }
};

}  // namespace quillon::pdf
