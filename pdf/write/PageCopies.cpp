#include "pdf/write/PageCopies.h"

#include <unordered_map>

namespace quillon::pdf {

PageCopies::PageCopies(const SourcePlan& plan, const PageTree& pages, const PageTreeWriter& tree,
                       SourceCopier& copier) {
    // A page may stand in its own tree under several indexes.
    std::unordered_map<std::uint32_t, std::uint32_t> announced;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> turns;  // by opening and page
    copies_.reserve(plan.copies().size());
    for (const SourcePlan::Copy& planned : plan.copies()) {
        Copy& copy = copies_.emplace_back();
        copy.page = planned.sourcePage < pages.pages().size() ? &pages.pages()[planned.sourcePage] : nullptr;
        copy.outputPage = planned.outputPage;
        copy.number = tree.pageNumber(planned.outputPage);
        const std::uint32_t number = copy.page ? copy.page->number : 0;
        const auto known = number == 0 ? announced.end() : announced.find(number);
        if (planned.first && known == announced.end()) {
            if (number == 0) continue;
            announced.emplace(number, planned.sourcePage);
            copier.announce(number, copy.number);
            continue;
        }
        const std::uint32_t name = number != 0 ? number : Overlay::none - planned.sourcePage;
        copy.group = groupOf(planned.opening, turns[{planned.opening, name}]++);
        if (number != 0) overlay(copy.group)->set(number, copy.number);
    }
    asked_.assign(overlays_.size(), true);
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        Copy& copy = copies_[i];
        if (copy.group == 0 || !copy.page || copy.page->number == 0) continue;
        copy.asked = announced[copy.page->number] == plan.copies()[i].sourcePage;
        if (!copy.asked) asked_[copy.group - 1] = false;
    }
}

std::uint32_t PageCopies::groupOf(std::uint32_t opening, std::uint32_t turn) {
    const auto [place, isNew] = groups_.try_emplace({opening, turn}, 0);
    if (isNew) {
        const Overlay* below = turn == 0 ? nullptr : overlay(groupOf(opening, 0));
        overlays_.emplace_back(below);
        place->second = static_cast<std::uint32_t>(overlays_.size());
    }
    return place->second;
}

const Overlay* PageCopies::ofOpening(std::uint32_t opening) const {
    const auto found = groups_.find({opening, 0});
    return found == groups_.end() ? nullptr : &overlays_[found->second - 1];
}

}  // namespace quillon::pdf
