#pragma once

#include "pdf/write/DocumentWriter.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace quillon::pdf {

/// What is taken of one source: which of its pages stand where in the output, and which of several copies of a page the
/// references to it mean.
///
/// A file that was opened several times (listed twice, or taken page by page) is one source. Links between pages of one
/// opening should stay among its copies, so the first copy of a page, which everything shared refers to, is the one of
/// the opening that took most pages; the pages of other openings get an overlay.
class SourcePlan {
public:
    struct Copy {
        std::uint32_t outputPage = 0;
        std::uint32_t sourcePage = 0;
        std::uint32_t opening = 0;
        bool first = false;
    };

    SourcePlan(const std::shared_ptr<Source>& source, std::span<const Copy> copies)
        : source_(&source), copies_(copies) {}

    [[nodiscard]] const std::shared_ptr<Source>& source() const noexcept { return *source_; }
    /// In the order of output pages.
    [[nodiscard]] std::span<const Copy> copies() const noexcept { return copies_; }

private:
    const std::shared_ptr<Source>* source_;
    std::span<const Copy> copies_;
};

/// The plans for all sources of a document, in the order of their first pages; the base is the first, even without
/// pages. A range to go through. Kept small, since thousands of sources may have a page each.
class SourcePlans {
public:
    /// `plan` must outlive this.
    explicit SourcePlans(const DocumentPlan& plan);
    SourcePlans(const SourcePlans&) = delete;
    SourcePlans& operator=(const SourcePlans&) = delete;

    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
    [[nodiscard]] SourcePlan operator[](std::size_t index) const noexcept;

private:
    struct Entry {
        const std::shared_ptr<Source>* source;
        std::uint32_t firstCopy;
        std::uint32_t copyCount;
    };

    std::vector<Entry> entries_;
    std::vector<SourcePlan::Copy> copies_;  // source by source
};

}  // namespace quillon::pdf
