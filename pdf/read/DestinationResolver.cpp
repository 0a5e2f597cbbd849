#include "pdf/read/DestinationResolver.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

Destination describe(ObjectReader& reader, const Array& array) {
    Destination destination;
    if (array.size() < 2) return destination;
    std::string kind;
    std::string view;
    std::vector<std::optional<double>> numbers;
    constexpr std::size_t longestView = 256;
    constexpr std::size_t longest = 6;  // page, FitR, and four numbers
    for (std::size_t i = 1; i < array.size() && i < longest; ++i) {
        const Object value = reader.resolve(array[i]);
        if (value.array() || value.dictionary() || value.string()) return destination;
        if (i == 1 && !value.name()) return destination;
        if (i == 1) kind = value.name()->value;
        if (i > 1) numbers.push_back(value.number());
        value.write(view);
        if (view.size() > longestView) return destination;
    }
    destination.view = std::move(view);
    const auto number = [&](std::size_t i) { return i < numbers.size() ? numbers[i] : std::nullopt; };
    if (kind == "XYZ") {
        destination.left = number(0);
        destination.top = number(1);
    } else if (kind == "FitH" || kind == "FitBH") {
        destination.top = number(0);
    } else if (kind == "FitV" || kind == "FitBV") {
        destination.left = number(0);
    } else if (kind == "FitR") {
        destination.left = number(0);
        destination.top = number(3);
    }
    return destination;
}

/// Whether there is nothing but names, numbers, null and the bracket at the end.
bool isPlain(std::string_view elements) {
    const std::size_t end = elements.size() - 1;
    for (std::size_t at = 0; at < end;) {
        const std::size_t begin = at++;
        if (isWhiteSpace(elements[begin])) continue;
        while (at < end && isRegular(elements[at])) ++at;
        const std::string_view token = elements.substr(begin, at - begin);
        if (token != "null" && std::string_view("/+-.0123456789").find(token.front()) == std::string_view::npos)
            return false;
    }
    return true;
}

/// `array`: up to its first closing bracket.
std::optional<ExplicitDestination> parseExplicit(std::string_view array) {
    std::size_t at = skipBlank(array, 1);
    const auto page = readReference(array, at);
    // A comment may have hidden the end.
    if (!page || at >= array.size() || !isPlain(array.substr(at))) return std::nullopt;
    return ExplicitDestination{*page, array.substr(at)};
}

}  // namespace

DestinationNames readDestinationNames(SourceDocument& document) {
    DestinationNames names;
    ObjectReader& reader = document.reader();
    if (!document.catalog()) return names;
    const Object catalog = reader.parse(*document.catalog());
    if (!catalog.dictionary()) return names;
    const Object old = reader.resolve((*catalog.dictionary())["Dests"]);
    if (const Dictionary* dictionary = old.dictionary()) {
        for (const auto& [name, value] : dictionary->entries()) names.old.add(name, value);
    }
    const Object trees = reader.resolve((*catalog.dictionary())["Names"]);
    if (trees.dictionary()) names.tree = readNameTree(reader, (*trees.dictionary())["Dests"]);
    return names;
}

std::optional<ExplicitDestination> explicitDestination(std::string_view object) {
    constexpr std::size_t longest = 128;
    std::size_t at = skipBlank(object, 0);
    const bool isDictionary = object.substr(std::min(at, object.size()), 2) == "<<";
    if (isDictionary) {
        at = skipBlank(object, at + 2);
        if (object.substr(std::min(at, object.size()), 2) != "/D") return std::nullopt;
        at = skipBlank(object, at + 2);
    }
    if (at >= object.size() || object[at] != '[') return std::nullopt;
    const std::string_view array = object.substr(at, longest);
    const std::size_t end = array.find(']');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view rest = object.substr(std::min(skipBlank(object, at + end + 1), object.size()));
    if (isDictionary && !rest.starts_with(">>")) return std::nullopt;
    return parseExplicit(array.substr(0, end + 1));
}

void DestinationResolver::readNames() {
    names_.emplace();
    const DestinationNames names = readDestinationNames(document_);
    for (const NamedValues* list : {&names.tree, &names.old}) {
        for (const auto& [name, value] : *list) names_->try_emplace(std::string(name), value);
    }
}

std::optional<Destination> DestinationResolver::named(const std::string& name) {
    if (!names_) readNames();
    const auto found = names_->find(name);
    return found == names_->end() ? std::nullopt : find(found->second, Form::ListOrDictionary);
}

std::optional<std::uint32_t> DestinationResolver::pageOf(const Object& page) {
    const auto& all = document_.pages().pages();
    if (const auto index = page.integer()) {
        if (*index < 0 || static_cast<std::uint64_t>(*index) >= all.size()) return std::nullopt;
        return static_cast<std::uint32_t>(*index);
    }
    if (!page.reference()) return std::nullopt;
    if (pages_.empty()) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].number != 0) pages_.try_emplace(all[i].number, static_cast<std::uint32_t>(i));
        }
    }
    const auto found = pages_.find(page.reference()->number);
    return found == pages_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Destination> DestinationResolver::find(const Object& value, Form form) {
    ObjectReader& reader = document_.reader();
    if (const Reference* reference = value.reference()) {
        // A huge object that much refers to is read once.
        const std::uint64_t key = (std::uint64_t{reference->number} << 2U) | static_cast<std::uint64_t>(form);
        const auto [place, isNew] = known_.try_emplace(key);
        std::optional<Destination>& known = place->second;
        if (!isNew) return known;
        const Object resolved = reader.resolve(value);
        if (!resolved.reference()) known = find(resolved, form);
        return known;
    }
    if (form == Form::Any && value.name()) return named(value.name()->value);
    if (form == Form::Any && value.string()) return named(*value.string());
    if (form != Form::List && value.dictionary()) return find((*value.dictionary())["D"], Form::List);
    if (!value.array() || value.array()->empty()) return std::nullopt;
    const auto page = pageOf(value.array()->front());
    if (!page) return std::nullopt;
    Destination found = describe(reader, *value.array());
    found.page = *page;
    return found;
}

}  // namespace quillon::pdf
