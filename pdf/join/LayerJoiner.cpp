#include "pdf/join/LayerJoiner.h"

#include "pdf/join/LayerOrder.h"

#include <algorithm>
#include <unordered_set>

namespace quillon::pdf {

namespace {

std::unordered_set<std::uint32_t> numbersIn(const Array& list) {
    std::unordered_set<std::uint32_t> numbers;
    for (const Object& element : list) {
        if (element.reference()) numbers.insert(element.reference()->number);
    }
    return numbers;
}

/// Without references to what is not in the output. `visits`: places of lists that were read, as often as they were.
Object living(const SourceCopies& source, const Object& value, std::uint64_t& visits, int depth = 0) {
    constexpr int deepest = 32;
    if (const Reference* reference = value.reference()) {
        if (source.copier.isTaken(reference->number)) return value;
        if (!source.reader().mayVisit(++visits)) return {};
        const Object resolved = source.reader().resolve(value);
        const bool isList = resolved.array() && depth < deepest;
        return isList ? living(source, resolved, visits, depth + 1) : Object();
    }
    if (const Array* array = value.array()) {
        Array result;
        visits += array->size();
        if (!source.reader().mayVisit(visits)) return {};
        for (const Object& element : *array) {
            Object kept = depth < deepest ? living(source, element, visits, depth + 1) : Object();
            const bool isEmpty = kept.isNull() || (kept.array() && kept.array()->empty());
            if (!isEmpty) result.push_back(std::move(kept));
        }
        return result;
    }
    if (const Dictionary* dictionary = value.dictionary()) {
        Dictionary result;
        for (const auto& [key, entry] : dictionary->entries()) {
            result.append(key, depth < deepest ? living(source, entry, visits, depth + 1) : Object());
        }
        return result;
    }
    return value;
}

}  // namespace

void LayerJoiner::end(const SourceCopies& source) {
    ObjectReader& reader = source.reader();
    const Object properties = reader.resolve(source.catalog["OCProperties"]);
    if (!properties.dictionary()) return;
    const Object all = reader.resolve((*properties.dictionary())["OCGs"]);
    if (!all.array()) return;
    Array layers;
    std::unordered_set<std::uint32_t> seen;
    for (const Object& layer : *all.array()) {
        const Reference* reference = layer.reference();
        if (!reference || !seen.insert(reference->number).second) continue;
        if (!source.isWhole && !source.copier.isTaken(reference->number)) continue;
        layers_ += source.copied(layer) + ' ';
        layers.push_back(layer);
    }
    if (layers.empty()) return;
    const Object configuration = reader.resolve((*properties.dictionary())["D"]);
    takeStates(source, configuration.dictionary() ? *configuration.dictionary() : Dictionary(), layers);
    isFirst_ = false;
}

void LayerJoiner::takeStates(const SourceCopies& source, const Dictionary& configuration, const Array& layers) {
    ObjectReader& reader = source.reader();
    const bool hidesAll = reader.resolve(configuration["BaseState"]).isName("OFF");
    const Object named = reader.resolve(configuration[hidesAll ? "ON" : "OFF"]);
    const auto exceptions = numbersIn(named.array() ? *named.array() : Array());
    for (const Object& layer : layers) {
        if (exceptions.contains(layer.reference()->number) != hidesAll) hidden_ += source.copied(layer) + ' ';
    }
    const auto add = [&](List& list, const Array& elements) {
        for (const Object& element : elements) list.values += source.copied(element) + ' ';
    };
    add(order_, LayerOrder(source, numbersIn(layers)).of(configuration["Order"]));
    std::uint64_t visits = 0;
    for (List& list : lists_) {
        const Object value = living(source, reader.resolve(configuration[list.key]), visits);
        if (value.array()) add(list, *value.array());
    }
    takeIntents(reader.resolve(configuration["Intent"]));
    if (!isFirst_) return;
    for (const char* key : {"Name", "Creator", "ListMode"}) {
        const Object& value = configuration[key];
        if (value.isNull()) continue;
        writeName(look_, key);
        look_ += ' ' + source.copied(value);
    }
}

/// A layer whose intent is not that of the configuration would not count.
void LayerJoiner::takeIntents(const Object& value) {
    const Array intents = value.array() ? *value.array() : Array{value.name() ? value : Object(Name{"View"})};
    for (const Object& intent : intents) {
        if (intent.name()) intents_.insert(intent.name()->value);
    }
}

std::string LayerJoiner::text() const {
    if (layers_.empty()) return {};
    std::string text = "<</OCGs[" + layers_ + "]/D<<" + look_;
    // What stands for a missing entry.
    if (intents_ != std::set<std::string>{"View"}) {
        text += "/Intent[";
        for (const std::string& intent : intents_) writeName(text, intent);
        text += ']';
    }
    if (!hidden_.empty()) text += "/OFF[" + hidden_ + ']';
    const auto add = [&text](const List& list) {
        if (!list.values.empty()) text += '/' + std::string(list.key) + '[' + list.values + ']';
    };
    add(order_);
    for (const List& list : lists_) add(list);
    return text + ">>>>";
}

}  // namespace quillon::pdf
