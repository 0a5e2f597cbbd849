#include "pdf/join/EntryEditor.h"

#include "pdf/object/Parser.h"

#include <unordered_map>

namespace quillon::pdf {

namespace {

Object edited(const Object& object, const EntryRule& rule, bool& changed) {
    if (const Array* array = object.array()) {
        Array result;
        for (const Object& element : *array) result.push_back(edited(element, rule, changed));
        return result;
    }
    const Dictionary* dictionary = object.dictionary();
    if (!dictionary) return object;
    Dictionary result;
    for (const auto& [key, value] : dictionary->entries()) {
        const auto replaced = rule(*dictionary, key, value);
        changed = changed || replaced;
        if (!replaced) result.append(key, edited(value, rule, changed));
        if (replaced && !replaced->isNull()) result.append(key, *replaced);
    }
    return result;
}

}  // namespace

bool editEntries(std::string_view text, const EntryRule& rule, std::string& changed) {
    bool any = false;
    const Object result = edited(Parser(text).parse(), rule, any);
    if (any) result.write(changed);
    return any;
}

std::vector<std::pair<std::string_view, const Object*>> lastEntries(const Dictionary& dictionary) {
    std::vector<std::pair<std::string_view, const Object*>> entries;
    std::unordered_map<std::string_view, std::size_t> places;
    for (const auto& [key, value] : dictionary.entries()) {
        const auto [place, isNew] = places.try_emplace(key, entries.size());
        if (isNew) entries.emplace_back(key, &value);
        entries[place->second].second = &value;
    }
    return entries;
}

}  // namespace quillon::pdf
