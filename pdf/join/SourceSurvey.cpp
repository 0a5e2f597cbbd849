#include "pdf/join/SourceSurvey.h"

#include <algorithm>

namespace quillon::pdf {

SourceSurvey SourceSurvey::read(const SourcePlan& plan, SourceDocument& document, Wishes wishes) {
    SourceSurvey survey;
    std::vector<bool> taken(document.pages().pages().size());
    for (const SourcePlan::Copy& copy : plan.copies()) {
        if (copy.sourcePage < taken.size()) taken[copy.sourcePage] = true;
    }
    survey.isWhole = std::ranges::find(taken, false) == taken.end();
    if (wishes.destinations) survey.destinations = DestinationTable(readDestinationNames(document));
    if (wishes.fields && document.catalogKeys().has("AcroForm") && document.catalog()) {
        ObjectReader& reader = document.reader();
        const Object catalog = reader.parse(*document.catalog());
        const Object form = catalog.dictionary() ? reader.resolve((*catalog.dictionary())["AcroForm"]) : Object();
        if (form.dictionary()) {
            survey.fields = FieldTree(reader, *form.dictionary());
            survey.pageFields = PageFields(document, survey.fields, taken);
        }
    }
    return survey;
}

/// In the order of the objects, since that is the order in which they stand in object streams.
void SourceSurvey::readExplicit(ObjectReader& reader) {
    if (!explicit_.empty() && wereRecovered_ == reader.table().recovered) return;
    explicit_.assign(destinations.size(), {});
    texts_.clear();
    std::vector<std::pair<Reference, std::size_t>> order;
    for (std::size_t place = 0; place < destinations.size(); ++place) {
        if (const Reference* reference = destinations.value(place).reference()) order.emplace_back(*reference, place);
    }
    std::ranges::sort(order);
    for (const auto& [reference, place] : order) {
        const auto object = reader.find(reference);
        const auto found = object ? pdf::explicitDestination(object->text()) : std::nullopt;
        if (!found || texts_.size() > UINT32_MAX) continue;
        explicit_[place] = {found->page, static_cast<std::uint32_t>(texts_.size()),
                            static_cast<std::uint32_t>(found->behind.size())};
        texts_ += found->behind;
    }
    wereRecovered_ = reader.table().recovered;
}

std::optional<ExplicitDestination> SourceSurvey::explicitDestination(std::size_t place) const {
    if (place >= explicit_.size() || explicit_[place].page.number == 0) return std::nullopt;
    const Explicit& found = explicit_[place];
    return ExplicitDestination{found.page, std::string_view(texts_).substr(found.begin, found.length)};
}

}  // namespace quillon::pdf
