#pragma once

#include "pdf/join/SourceSurvey.h"
#include "pdf/write/PageCopies.h"
#include "pdf/write/SourceCopier.h"
#include "pdf/write/SourcePlan.h"

#include <cstddef>
#include <cstdint>

namespace quillon::pdf {

/// A source whose pages are being copied, as those see it that join what belongs to the documents.
struct SourceCopies {
    const SourcePlan& plan;
    PageCopies& pages;
    SourceDocument& document;
    SourceCopier& copier;
    const Dictionary& catalog;  ///< of the source
    SourceSurvey& survey;
    std::size_t ordinal;  ///< counted from 1 in the order of the sources
    bool isBase;
    bool isWhole = survey.isWhole;

    [[nodiscard]] ObjectReader& reader() const { return document.reader(); }

    /// Counts bytes written for a group of copies. False once that is more than a file of its size can hold.
    [[nodiscard]] bool charge(std::uint64_t bytes, std::uint32_t group) const {
        return copier.charge(bytes, pages.overlay(group));
    }

    /// A value of the source as text of the output, references rewritten to the first copies, or those of a group.
    [[nodiscard]] std::string copied(const Object& value, const Overlay* overlay = nullptr) const {
        if (const Reference* reference = overlay ? nullptr : value.reference()) {
            std::string written;
            writeReference(written, copier.copyReference(*reference));
            return written;
        }
        std::string text;
        std::string out;
        value.write(text);
        copier.copyValue(text, overlay, out);
        return out;
    }
};

}  // namespace quillon::pdf
