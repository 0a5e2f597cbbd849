#include "pdf/write/SourcePlan.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace quillon::pdf {

namespace {

/// Chooses the first copies among those of one source.
void chooseFirst(std::span<SourcePlan::Copy> copies) {
    // Nearly always each page is taken once, in their order.
    if (std::ranges::adjacent_find(copies, std::greater_equal(), &SourcePlan::Copy::sourcePage) == copies.end()) {
        for (SourcePlan::Copy& copy : copies) copy.first = true;
        return;
    }
    std::unordered_map<std::uint32_t, std::size_t> pagesOfOpening;
    for (const SourcePlan::Copy& copy : copies) ++pagesOfOpening[copy.opening];
    std::unordered_map<std::uint32_t, std::size_t> chosen;  // source page: place of the copy
    for (std::size_t i = 0; i < copies.size(); ++i) {
        const auto [place, isNew] = chosen.try_emplace(copies[i].sourcePage, i);
        const std::size_t known = pagesOfOpening[copies[place->second].opening];
        if (!isNew && pagesOfOpening[copies[i].opening] > known) place->second = i;
    }
    for (const auto& [page, place] : chosen) copies[place].first = true;
}

}  // namespace

SourcePlans::SourcePlans(const DocumentPlan& plan) {
    // Sorted instead of looked up, since a table of thousands of sources would take more memory than the result.
    std::vector<std::pair<const Source*, std::uint32_t>> pages;  // of each source, in their order
    const auto sourcePage = [&](std::uint32_t page) { return std::get_if<SourcePage>(&plan.pages[page].origin); };
    for (std::uint32_t i = 0; i < plan.pages.size(); ++i) {
        if (const SourcePage* page = sourcePage(i)) pages.emplace_back(page->source.get(), i);
    }
    std::ranges::sort(pages);
    copies_.reserve(pages.size());
    std::size_t sources = plan.base ? 1 : 0;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (i == 0 || pages[i].first != pages[i - 1].first) ++sources;
    }
    entries_.reserve(sources);
    for (const auto& [source, number] : pages) {
        const SourcePage& page = *sourcePage(number);
        const auto copy = static_cast<std::uint32_t>(copies_.size());
        const bool isFirst = entries_.empty() || entries_.back().source->get() != source;
        if (isFirst) entries_.push_back({&page.source, copy, 0});
        ++entries_.back().copyCount;
        copies_.push_back({number, page.index, page.opening, false});
    }
    for (const Entry& entry : entries_) chooseFirst(std::span(copies_).subspan(entry.firstCopy, entry.copyCount));
    std::ranges::sort(entries_, {}, [&](const Entry& entry) { return copies_[entry.firstCopy].outputPage; });
    if (!plan.base) return;
    auto base = std::ranges::find(entries_, plan.base.get(), [](const Entry& entry) { return entry.source->get(); });
    if (base == entries_.end()) base = entries_.insert(base, {&plan.base, 0, 0});
    std::rotate(entries_.begin(), base, std::next(base));
}

SourcePlan SourcePlans::operator[](std::size_t index) const noexcept {
    const Entry& entry = entries_[index];
    return {*entry.source, std::span(copies_).subspan(entry.firstCopy, entry.copyCount)};
}

}  // namespace quillon::pdf
