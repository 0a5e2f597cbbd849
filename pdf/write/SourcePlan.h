#pragma once

#include "pdf/write/DocumentWriter.h"
#include "pdf/write/SourceCopier.h"

#include <cstdint>
#include <map>
#include <memory>
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

    explicit SourcePlan(std::shared_ptr<Source> source) : source_(std::move(source)) {}

    /// Adds a copy; to be called in the order of output pages.
    void add(std::size_t outputPage, const SourcePage& page) {
        copies_.push_back({static_cast<std::uint32_t>(outputPage), page.index, page.opening, false});
    }
    /// Chooses the first copies; to be called when all are added.
    void choose();

    [[nodiscard]] const std::shared_ptr<Source>& source() const noexcept { return source_; }
    [[nodiscard]] const std::vector<Copy>& copies() const noexcept { return copies_; }

    /// The plans for all sources of `plan`, in the order of their first pages; the base is among them even without
    /// pages.
    [[nodiscard]] static std::vector<SourcePlan> of(const DocumentPlan& plan);

private:
    std::shared_ptr<Source> source_;
    std::vector<Copy> copies_;
};

}  // namespace quillon::pdf
