#include "pdf/join/DestinationJoiner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

namespace quillon::pdf {

namespace {

bool hasWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word.front()); at != std::string_view::npos; at = text.find(word.front(), at + 1)) {
        if (text.substr(at, word.size()) == word) return true;
    }
    return false;
}

/// Whether there may be a link in `text`. Nearly every object passes here, so what is looked for first is letters that
/// are rarer than the slash.
bool mayLink(std::string_view text) {
    return hasWord(text, "GoTo") || hasWord(text, "Dest") || text.find('#') != std::string_view::npos;
}

/// The text of a name or string that is written without any escape; nothing for any other.
std::optional<std::string_view> plainText(std::string_view value) {
    if (value.front() == '/') return value.substr(1);
    if (value.front() != '(') return std::nullopt;
    const std::string_view text = value.substr(1, value.size() - 2);
    if (text.find_first_of("\\(\r") != std::string_view::npos) return std::nullopt;
    return text;
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
        if (known.try_emplace(name, static_cast<std::uint32_t>(entries_.size())).second) {
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

/// The value of a name as text of the output. The pages of the output are others, so none can be given by its index.
std::string DestinationJoiner::joinedValue(const Object& value) {
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
std::optional<std::string> DestinationJoiner::replacement(std::string_view name, bool isName, const Overlay* overlay) {
    const auto& known = isName ? old_ : tree_;
    auto found = known.find(name);
    if (found == known.end()) {
        const auto& other = isName ? tree_ : old_;
        found = other.find(name);
        if (found == other.end()) return "null";
    }
    Name& entry = entries_[found->second];
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

bool DestinationJoiner::edit(std::string_view text, const Overlay* overlay, std::string& changed) {
    if (!mayLink(text)) return false;
    if (!scanner_.scan(text)) return editThroughParser(text, overlay, changed);
    std::size_t copied = 0;
    for (const LinkScanner::Link& found : scanner_.links()) {
        if (!found.leads) continue;
        const std::string_view value = text.substr(found.begin, found.end - found.begin);
        const auto replaced = replacementOf(value, found.kind, overlay);
        if (!replaced) continue;
        changed.append(text, copied, found.begin - copied);
        if (isRegular(changed.back()) && isRegular(replaced->front())) changed += ' ';
        changed += *replaced;
        copied = found.end;
        if (isRegular(changed.back()) && copied < text.size() && isRegular(text[copied])) changed += ' ';
    }
    if (copied == 0) return false;
    changed.append(text, copied);
    return true;
}

std::optional<std::string> DestinationJoiner::replacementOf(std::string_view value, LinkScanner::Kind kind,
                                                            const Overlay* overlay) {
    if (kind == LinkScanner::Kind::Page) return pageReference(value);
    const bool isName = kind == LinkScanner::Kind::Name;
    if (kind != LinkScanner::Kind::Reference) {
        if (const auto plain = plainText(value)) return replacement(*plain, isName, overlay);
    }
    return replacement(Parser(value).parse(), overlay);
}

/// What takes the place of a destination; nothing if it stays.
std::optional<std::string> DestinationJoiner::replacement(const Object& destination, const Overlay* overlay) {
    if (const auto* name = destination.name()) return replacement(name->value, true, overlay);
    if (const std::string* name = destination.string()) return replacement(*name, false, overlay);
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

bool DestinationJoiner::editThroughParser(std::string_view text, const Overlay* overlay, std::string& changed) {
    bool any = false;
    const Object result = edited(Parser(text).parse(), overlay, any);
    if (any) result.write(changed);
    return any;
}

Object DestinationJoiner::edited(const Object& object, const Overlay* overlay, bool& changed) {
    if (const Array* array = object.array()) {
        Array result;
        for (const Object& element : *array) result.push_back(edited(element, overlay, changed));
        return result;
    }
    const Dictionary* dictionary = object.dictionary();
    if (!dictionary) return object;
    const Dictionary& entries = *dictionary;
    const bool goesTo = source_->reader().resolve(entries["S"]).isName("GoTo");
    const bool isOutlineItem = !entries["Title"].isNull() && !entries["Parent"].isNull();
    const bool isLink = isOutlineItem || source_->reader().resolve(entries["Subtype"]).isName("Link");
    Dictionary result;
    for (const auto& [key, value] : entries.entries()) {
        const bool leads = (key == "Dest" && isLink) || (key == "D" && goesTo);
        const auto replaced = leads ? replacement(value, overlay) : std::nullopt;
        changed = changed || replaced;
        result.append(key, replaced ? Parser(*replaced).parse() : edited(value, overlay, changed));
    }
    return result;
}

}  // namespace quillon::pdf
