#pragma once

#include "pdf/write/PageTreeWriter.h"
#include "pdf/write/SourceCopier.h"
#include "pdf/write/SourcePlan.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// The copies of one source's pages, in groups within which links and form fields stay: group 0 has the first copy of
/// each page; of the others each has pages of one opening of the file, each page once.
class PageCopies {
public:
    struct Copy {
        const PageTree::Page* page = nullptr;  ///< null when the source has no such page any more
        std::uint32_t outputPage = 0;
        std::uint32_t number = 0;  ///< of the page in the output
        std::uint32_t group = 0;
        bool asked = true;  ///< see SourceCopier::PageJob
    };

    /// Announces the first copies to `copier`.
    PageCopies(const SourcePlan& plan, const PageTree& pages, const PageTreeWriter& tree, SourceCopier& copier);

    [[nodiscard]] const std::vector<Copy>& all() const noexcept { return copies_; }
    [[nodiscard]] std::size_t groups() const noexcept { return overlays_.size() + 1; }
    /// False for a group of copies that were not all asked for, see Copy. There may be as many of those as the source
    /// has places in its tree, however small it is.
    [[nodiscard]] bool isAsked(std::uint32_t group) const { return group == 0 || asked_[group - 1]; }
    /// What a group has copies of its own of; null for group 0. Valid as long as this object.
    [[nodiscard]] Overlay* overlay(std::uint32_t group) { return group == 0 ? nullptr : &overlays_[group - 1]; }
    /// The same for the first group of an opening of the file; null when it has none, since its pages are in group 0.
    [[nodiscard]] const Overlay* ofOpening(std::uint32_t opening) const;

private:
    [[nodiscard]] std::uint32_t groupOf(std::uint32_t opening, std::uint32_t turn);

    std::vector<Copy> copies_;
    std::deque<Overlay> overlays_;
    std::vector<bool> asked_;                                                  // for each of them
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> groups_;  // by opening, and how often before
};

}  // namespace quillon::pdf
