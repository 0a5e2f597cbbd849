#include "pdf/join/PageLabelJoiner.h"

#include "pdf/join/JoinedNames.h"
#include "pdf/read/KeyTree.h"

#include <algorithm>
#include <map>

namespace quillon::pdf {

void PageLabelJoiner::take(const SourceCopies& source) {
    ObjectReader& reader = source.reader();
    std::map<std::int64_t, Label> ranges;  // by their first page
    ranges[0] = {"/S/D", 1};
    for (const auto& [page, value] : readNumberTree(reader, source.catalog["PageLabels"])) {
        const Object resolved = reader.resolve(value);
        if (!resolved.dictionary()) continue;
        Label& label = ranges[page];
        label = {};
        const Object style = reader.resolve((*resolved.dictionary())["S"]);
        const Object prefix = reader.resolve((*resolved.dictionary())["P"]);
        if (style.name()) {
            label.look = "/S";
            writeName(label.look, style.name()->value);
        }
        if (prefix.string()) {
            label.look += "/P";
            writeString(label.look, *prefix.string());
        }
        label.number = reader.resolve((*resolved.dictionary())["St"]).integer().value_or(1);
    }
    const auto& pages = source.document.pages().pages();
    for (const PageCopies::Copy& copy : source.pages.all()) {
        if (!copy.page) continue;
        const std::int64_t index = copy.page - pages.data();
        const auto range = std::prev(ranges.upper_bound(index));
        constexpr std::int64_t highest = 1'000'000'000;
        const std::int64_t number = std::clamp<std::int64_t>(range->second.number, 1, highest) + index - range->first;
        labels_[copy.outputPage] = {range->second.look, number};
    }
}

std::string PageLabelJoiner::write(ObjectOutput& output, const PageTreeWriter& pages) const {
    std::vector<std::pair<std::int64_t, std::string>> ranges;
    std::int64_t place = 0;
    const Label* last = nullptr;
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        if (pages.isDropped(i)) continue;
        const Label& label = labels_[i];
        const std::int64_t next = last && last->number != 0 ? last->number + 1 : 0;
        if (!last || label.look != last->look || label.number != next) {
            std::string text = "<<" + label.look;
            if (label.number > 1) text += "/St " + std::to_string(label.number);
            ranges.emplace_back(place, text + ">>");
        }
        last = &label;
        ++place;
    }
    return std::to_string(writeNumberTree(output, ranges)) + " 0 R";
}

}  // namespace quillon::pdf
