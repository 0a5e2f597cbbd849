#include "pdf/join/DestinationJoiner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

namespace quillon::pdf {

namespace {

/// The text of a name or string that is written without any escape; nothing for any other.
std::optional<std::string_view> plainText(std::string_view value) {
    if (value.front() != '/') return plainString(value);
    return value.find('#') == std::string_view::npos ? std::optional(value.substr(1)) : std::nullopt;
}

/// Whether the text of a destination is an array that names its page by a reference.
bool namesPage(std::string_view destination) {
    const std::size_t begin = skipBlank(destination, 1);
    const std::size_t end = skipValue(destination, begin).value_or(begin);
    return end != begin && isDigit(destination[begin]) && destination[end - 1] == 'R';
}

}  // namespace

void DestinationJoiner::begin(const SourceCopies& source) {
    source_ = &source;
    resolver_.emplace(source.document);
    names_ = readDestinationNames(source.document);
    entries_.clear();
    tree_.clear();
    old_.clear();
    entries_.reserve(names_.tree.size() + names_.old.size());
    tree_.reserve(names_.tree.size());
    add(names_.tree, false);
    add(names_.old, true);
    if (!source.isWhole) return;
    for (Name& name : entries_) keep(name);
}

void DestinationJoiner::add(const NamedValues& names, bool old) {
    auto& known = old ? old_ : tree_;
    for (const auto& [name, value] : names) {
        if (known.add(name, static_cast<std::uint32_t>(entries_.size()))) {
            entries_.push_back({&name, &value, {}, State::Waiting, old});
        }
    }
}

void DestinationJoiner::keep(Name& name) {
    name.joined = joined_.reserve(*name.name, source_->ordinal);
    name.state = State::Kept;
}

void DestinationJoiner::end() {
    for (const Name& name : entries_) {
        if (name.state == State::Kept) joined_.set(name.joined, joinedValue(*name.value));
    }
    source_ = nullptr;
    resolver_.reset();
    entries_.clear();
    tree_.clear();
    old_.clear();
    indirect_.clear();
    names_ = {};
}

/// A short array that names its page, which is all that the object says; empty for any other.
std::string_view DestinationJoiner::explicitText(const ObjectText& object) {
    std::string_view text = object.text();
    text.remove_prefix(std::min(text.size(), skipBlank(text, 0)));
    if (text.starts_with("<<")) {
        std::string_view destination;
        DictionaryScanner scanner(text);
        for (DictionaryScanner::Entry entry; scanner.next(entry);) {
            if (!keyIs(entry.key, "D")) return {};
            destination = entry.value;
        }
        text = scanner.valid() ? destination : std::string_view();
    }
    if (!text.starts_with('[') || !namesPage(text)) return {};
    constexpr std::size_t longest = 128;
    const std::size_t end = skipValue(text.substr(0, longest), 0).value_or(0);
    return text.substr(0, end);
}

/// The value of a name as text of the output. The pages of the output are others, so none can be given by its index.
std::string DestinationJoiner::joinedValue(const Object& value) {
    // Nearly all are small objects to which nothing else refers. Written in place they take half of the room.
    const auto object = value.reference() ? source_->reader().find(*value.reference()) : std::nullopt;
    const std::string_view text = object ? explicitText(*object) : std::string_view();
    if (!text.empty() && source_->reader().charge(text.size())) {
        std::string out;
        source_->copier.copyValue(text, nullptr, out);
        return out;
    }
    const Object* destination = value.reference() ? &valueOf(*value.reference()) : &value;
    if (destination->dictionary()) destination = &(*destination->dictionary())["D"];
    if (destination->reference()) destination = &valueOf(*destination->reference());
    const auto replaced = destination->array() ? withPage(*destination->array()) : std::nullopt;
    return source_->copied(replaced ? Parser(*replaced).parse() : value);
}

bool DestinationJoiner::isLive(const Object& value) {
    const auto destination = resolver_->resolve(value);
    if (!destination) return false;
    const std::uint32_t page = source_->document.pages().pages()[destination->page].number;
    return page != 0 && source_->copier.isTaken(page);
}

/// What takes the place of a name in a link of a page; nothing if it stays.
std::optional<std::string> DestinationJoiner::renamed(std::string_view name, bool isName, const Overlay* overlay) {
    auto place = (isName ? old_ : tree_).find(name);
    if (!place) place = (isName ? tree_ : old_).find(name);
    if (!place) return "null";
    Name& entry = entries_[*place];
    if (overlay) return explicitly(entry, *overlay);
    if (entry.state == State::Waiting) {
        if (isLive(*entry.value)) {
            keep(entry);
        } else {
            entry.state = State::Dead;
        }
    }
    if (entry.state == State::Dead) return "null";
    // A joined name has something behind it, if it is another.
    if (!isName && entry.joined.size() == name.size()) return std::nullopt;
    std::string text;
    writeString(text, entry.joined);
    return text;
}

/// The page of the source with this index, counted from 0, as a reference.
std::string DestinationJoiner::pageReference(std::string_view index) const {
    const auto& pages = source_->document.pages().pages();
    const auto number = Parser(index).parse().integer().value_or(-1);
    if (number < 0 || static_cast<std::uint64_t>(number) >= pages.size()) return "null";
    const PageTree::Page& page = pages[static_cast<std::size_t>(number)];
    std::string text;
    if (page.number == 0) return "null";
    Object(Reference{page.number, page.generation}).write(text);
    return text;
}

/// The destination as an array with a reference of the source, which leads to the copy of the page that the overlay
/// names.
std::string DestinationJoiner::explicitly(const Name& name, const Overlay& overlay) {
    const auto destination = resolver_->resolve(*name.value);
    if (!destination) return "null";
    const PageTree::Page& page = source_->document.pages().pages()[destination->page];
    if (page.number == 0 || (overlay.find(page.number) == 0 && !source_->copier.isTaken(page.number))) return "null";
    std::string text = "[";
    Object(Reference{page.number, page.generation}).write(text);
    return text + destination->view + ']';
}

std::optional<std::string> DestinationJoiner::replacement(std::string_view destination, const Overlay* overlay) {
    if (const auto plain = plainText(destination)) return renamed(*plain, destination.front() == '/', overlay);
    if (destination.front() == '[' && namesPage(destination)) return std::nullopt;
    return replacement(Parser(destination).parse(), overlay);
}

/// What takes the place of a destination; nothing if it stays.
std::optional<std::string> DestinationJoiner::replacement(const Object& destination, const Overlay* overlay) {
    if (const auto* name = destination.name()) return renamed(name->value, true, overlay);
    if (const std::string* name = destination.string()) return renamed(*name, false, overlay);
    if (const Reference* reference = destination.reference()) {
        const Object& standsThere = valueOf(*reference);
        return standsThere.reference() ? std::nullopt : replacement(standsThere, overlay);
    }
    if (destination.array()) return withPage(*destination.array());
    return std::nullopt;
}

/// An array that names its page by an index, with a reference instead; nothing for any other.
std::optional<std::string> DestinationJoiner::withPage(const Array& destination) const {
    if (destination.empty() || !destination.front().integer()) return std::nullopt;
    std::string text = "[" + pageReference(std::to_string(*destination.front().integer()));
    for (std::size_t i = 1; i < destination.size(); ++i) {
        text += ' ';
        destination[i].write(text);
    }
    return text + ']';
}

/// The destination that is an object of its own; null where it can stay there, as one that names its page can.
const Object& DestinationJoiner::valueOf(Reference reference) {
    const auto [place, isNew] = indirect_.try_emplace(reference.number);
    if (!isNew) return place->second;
    // More than any destination has; a long one is not to be written into every link.
    constexpr std::size_t longest = 16;
    ObjectReader& reader = source_->reader();
    const auto object = reader.find(reference);
    if (!object) return place->second;
    const std::string_view text = object->text();
    const std::size_t begin = skipBlank(text, 0);
    if (begin >= text.size()) return place->second;
    if (text[begin] == '[') {
        const Object first = Parser(text, begin + 1).parse();
        if (!first.integer()) return place->second;
    }
    Object value = reader.resolve(Object(reference));
    if (value.dictionary()) {
        value = reader.resolve(Object((*value.dictionary())["D"]));
        if (!value.array() || value.array()->empty() || !value.array()->front().integer()) return place->second;
    }
    if (value.string() || value.name() || (value.array() && value.array()->size() <= longest)) {
        place->second = std::move(value);
    }
    return place->second;
}

Object DestinationJoiner::withLinks(const Object& value, const Overlay* overlay) {
    if (const Array* array = value.array()) {
        Array result;
        for (const Object& element : *array) result.push_back(withLinks(element, overlay));
        return result;
    }
    const Dictionary* dictionary = value.dictionary();
    if (!dictionary) return value;
    const Dictionary& entries = *dictionary;
    const bool goesTo = source_->reader().resolve(entries["S"]).isName("GoTo");
    const bool isOutlineItem = !entries["Title"].isNull() && !entries["Parent"].isNull();
    const bool isLink = isOutlineItem || source_->reader().resolve(entries["Subtype"]).isName("Link");
    Dictionary result;
    for (const auto& [key, entry] : entries.entries()) {
        const bool leads = (key == "Dest" && isLink) || (key == "D" && goesTo);
        const auto replaced = leads ? replacement(entry, overlay) : std::nullopt;
        result.append(key, replaced ? Parser(*replaced).parse() : withLinks(entry, overlay));
    }
    return result;
}

}  // namespace quillon::pdf
