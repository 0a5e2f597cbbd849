#include "pdf/join/Unfolded.h"

#include <xxhash.h>

#include <map>
#include <string_view>

namespace quillon::pdf {

namespace {

/// What stands for a text that is compared: itself, or a hash.
std::string shortened(std::string text) {
    constexpr std::size_t longest = 64;
    if (text.size() <= longest) return text;
    const XXH128_hash_t hash = XXH3_128bits(text.data(), text.size());
    return '#' + std::to_string(hash.high64) + '.' + std::to_string(hash.low64);
}

}  // namespace

std::string Unfolded::digest(const Object& value, int depth) {
    constexpr int deepest = 8;
    if (depth > deepest) return different();
    std::string text;
    if (const Reference* reference = value.reference()) return object(*reference, depth);
    if (const Array* array = value.array()) {
        text = "[";
        for (const Object& element : *array) text += digest(element, depth + 1);
        text += ']';
    } else if (const Dictionary* dictionary = value.dictionary()) {
        std::map<std::string_view, const Object*> sorted;
        for (const auto& [key, entry] : dictionary->entries()) sorted[key] = &entry;
        text = "<<";
        for (const auto& [key, entry] : sorted) {
            writeName(text, key);
            text += digest(*entry, depth + 1);
        }
        text += ">>";
    } else {
        text = " ";
        value.write(text);
    }
    return shortened(std::move(text));
}

/// The digest of an object; each is read once, however often it is referred to.
std::string Unfolded::object(Reference reference, int depth) {
    const auto [place, isNew] = known_.try_emplace(reference.number, different());
    std::string& known = place->second;
    if (!isNew) return known;
    const auto whole = source_.reader().findWhole(reference);
    const bool isStream = whole && whole->streamData();
    known =
        isStream ? source_.copied(Object(reference)) : digest(source_.reader().resolve(Object(reference)), depth + 1);
    return known;
}

/// Equal to nothing of another source.
std::string Unfolded::different() const {
    return "!" + std::to_string(source_.ordinal);
}

}  // namespace quillon::pdf
