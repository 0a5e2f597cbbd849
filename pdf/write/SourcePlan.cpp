#include "pdf/write/SourcePlan.h"

#include <algorithm>
#include <unordered_map>

namespace quillon::pdf {

void SourcePlan::choose() {
    std::unordered_map<std::uint32_t, std::size_t> pagesOfOpening;
    for (const Copy& copy : copies_) ++pagesOfOpening[copy.opening];
    std::unordered_map<std::uint32_t, std::size_t> chosen;  // source page: place of the copy
    for (std::size_t i = 0; i < copies_.size(); ++i) {
        const auto [place, isNew] = chosen.try_emplace(copies_[i].sourcePage, i);
        const std::size_t known = pagesOfOpening[copies_[place->second].opening];
        if (!isNew && pagesOfOpening[copies_[i].opening] > known) place->second = i;
    }
    for (const auto& [page, place] : chosen) copies_[place].first = true;
}

std::vector<SourcePlan> SourcePlan::of(const DocumentPlan& plan) {
    std::vector<SourcePlan> plans;
    std::unordered_map<const Source*, std::size_t> places;
    const auto planFor = [&](const std::shared_ptr<Source>& source) -> SourcePlan& {
        const auto [place, isNew] = places.try_emplace(source.get(), plans.size());
        if (isNew) plans.emplace_back(source);
        return plans[place->second];
    };
    if (plan.base) planFor(plan.base);
    for (std::size_t i = 0; i < plan.pages.size(); ++i) {
        if (const auto* page = std::get_if<SourcePage>(&plan.pages[i].origin)) planFor(page->source).add(i, *page);
    }
    for (SourcePlan& source : plans) source.choose();
    return plans;
}

}  // namespace quillon::pdf
