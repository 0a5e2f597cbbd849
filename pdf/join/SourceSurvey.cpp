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
    if (wishes.destinations) survey.destinations = readDestinationNames(document);
    if (wishes.fields && document.catalogKeys().has("AcroForm") && document.catalog()) {
        ObjectReader& reader = document.reader();
        const Object catalog = reader.parse(*document.catalog());
        const Object form = catalog.dictionary() ? reader.resolve((*catalog.dictionary())["AcroForm"]) : Object();
        if (form.dictionary()) survey.fields = FieldTree(reader, *form.dictionary());
    }
    return survey;
}

/// In the order of the objects, since that is the order in which they stand in object streams.
void SourceSurvey::readTexts(ObjectReader& reader) {
    if (!spans_.empty() && wereRecovered_ == reader.table().recovered) return;
    spans_.clear();
    texts_.clear();
    std::vector<std::pair<Reference, std::size_t>> order;
    for (const auto* names : {&destinations.tree, &destinations.old}) {
        for (const auto& [name, value] : *names) {
            if (value.reference()) order.emplace_back(*value.reference(), spans_.size());
            spans_.emplace_back();
        }
    }
    std::ranges::sort(order);
    for (const auto& [reference, index] : order) {
        const auto object = reader.find(reference);
        const std::string_view text = object ? explicitDestination(object->text()) : std::string_view();
        spans_[index] = {texts_.size(), text.size()};
        texts_ += text;
    }
    wereRecovered_ = reader.table().recovered;
}

std::string_view SourceSurvey::explicitText(std::size_t index) const {
    if (index >= spans_.size()) return {};
    return std::string_view(texts_).substr(spans_[index].begin, spans_[index].length);
}

}  // namespace quillon::pdf
