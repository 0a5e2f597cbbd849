#include "pdf/join/LayerOrder.h"

#include <utility>

namespace quillon::pdf {

Array LayerOrder::of(const Object& order) {
    const Object resolved = source_.reader().resolve(order);
    return resolved.array() ? living(*resolved.array(), 0) : Array();
}

/// What is left of a list. A heading is of what stands behind it up to the next one; at the start of a list that stands
/// in another it is of all of it.
Array LayerOrder::living(const Array& list, int depth) {
    constexpr int deepest = 32;
    Array result;
    visits_ += list.size();
    if (depth == deepest || !source_.reader().mayVisit(visits_)) return result;
    Object heading;
    Object gone;  // the name of the layer just before, if that is not in the output
    for (std::size_t i = 0; i < list.size(); ++i) {
        Object kept;
        const Object above = std::exchange(gone, {});
        if (list[i].reference() && layers_.contains(list[i].reference()->number)) {
            kept = list[i];
        } else if (const Object element = source_.reader().resolve(list[i]); element.array()) {
            kept = below(living(*element.array(), depth + 1), above);
        } else if (element.string()) {
            const bool isOfAll = i == 0 && depth > 0;
            if (!isOfAll) heading = element;
        } else if (element.dictionary()) {
            gone = source_.reader().resolve((*element.dictionary())["Name"]);
        }
        if (kept.isNull()) continue;
        if (!heading.isNull()) result.push_back(std::exchange(heading, {}));
        result.push_back(std::move(kept));
    }
    const Object first = list.empty() || depth == 0 ? Object() : source_.reader().resolve(list.front());
    if (first.string() && !result.empty()) result.insert(result.begin(), first);
    return result;
}

/// The list of what stands below a layer, headed by the name of that if it is gone; null when the list is empty.
Object LayerOrder::below(Array list, const Object& gone) {
    if (list.empty()) return {};
    if (gone.string() && !list.front().string()) list.insert(list.begin(), gone);
    return list;
}

}  // namespace quillon::pdf
