#include "pdf/join/DestinationJoiner.h"

#include "pdf/object/Characters.h"
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

}  // namespace

void DestinationJoiner::begin(const SourceCopies& source) {
    source_ = &source;
    resolver_.emplace(source.document);
    entries_.assign(table().size(), {});
    allStay_ = source.isWhole;
    if (!source.isWhole) return;
    joined_.expect(entries_.size());
    for (std::size_t place = 0; place < entries_.size(); ++place) {
        constexpr std::size_t distance = 8;
        if (place + distance < entries_.size()) joined_.fetchPlaceOf(table().name(place + distance));
        keep(place);
    }
}

void DestinationJoiner::keep(std::size_t place) {
    const std::string_view name = table().name(place);
    Name& entry = entries_[place];
    entry.joined = joined_.reserve(name, source_->ordinal);
    entry.state = State::Kept;
    // A joined name has something behind it, if it is another.
    entry.stays = joined_.nameAt(entry.joined).size() == name.size();
    allStay_ = allStay_ && entry.stays;
}

bool DestinationJoiner::writeNames() {
    if (source_->isWhole) source_->survey.readExplicit(source_->reader());
    bool any = false;
    for (std::size_t place = 0; place < entries_.size(); ++place) {
        Name& name = entries_[place];
        if (name.state != State::Kept) continue;
        text_.clear();
        writeValue(place, text_);
        joined_.set(name.joined, text_);
        name.state = State::Written;
        any = true;
    }
    return any;
}

void DestinationJoiner::release() {
    source_ = nullptr;
    resolver_.reset();
    entries_.clear();
    indirect_.clear();
}

/// Appends the value of a name as text of the output. The pages of the output are others, so none can be given by its
/// index.
void DestinationJoiner::writeValue(std::size_t place, std::string& out) {
    // Nearly all are small objects to which nothing else refers. Written in place they take half of the room.
    const auto known = source_->survey.explicitDestination(place);
    constexpr std::size_t longestReference = 14;
    if (known && source_->reader().charge(longestReference + known->behind.size())) {
        out += '[';
        writeReference(out, source_->copier.copyReference(known->page));
        out += known->behind;
        return;
    }
    const Object& value = table().value(place);
    const Object* destination = value.reference() ? &valueOf(*value.reference()) : &value;
    if (destination->dictionary()) destination = &(*destination->dictionary())["D"];
    if (destination->reference()) destination = &valueOf(*destination->reference());
    const auto replaced = destination->array() ? withPage(*destination->array()) : std::nullopt;
    out += source_->copied(replaced ? Parser(*replaced).parse() : value);
}

bool DestinationJoiner::isLive(const Object& value) {
    const auto destination = resolver_->resolve(value);
    if (!destination) return false;
    const std::uint32_t page = source_->document.pages().pages()[destination->page].number;
    return page != 0 && source_->copier.isTaken(page);
}

/// The place of what a link means by a name or by a text; nothing where it means nothing.
std::optional<std::size_t> DestinationJoiner::placeOf(std::string_view name, bool isName) const {
    const DestinationTable& names = table();
    if (const auto place = isName ? names.findOld(name) : names.findInTree(name)) return place;
    return isName ? names.findInTree(name) : names.findOld(name);
}

/// What takes the place of a name in a link of a page; nothing if it stays.
std::optional<std::string> DestinationJoiner::renamed(std::string_view name, bool isName, const Overlay* overlay) {
    const auto place = placeOf(name, isName);
    if (!place) return "null";
    Name& entry = entries_[*place];
    if (overlay) return explicitly(table().value(*place), *overlay);
    if (entry.state == State::Waiting) {
        if (isLive(table().value(*place))) {
            keep(*place);
        } else {
            entry.state = State::Dead;
        }
    }
    if (entry.state == State::Dead) return "null";
    if (!isName && entry.stays) return std::nullopt;
    std::string text;
    writeString(text, joined_.nameAt(entry.joined));
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
std::string DestinationJoiner::explicitly(const Object& value, const Overlay& overlay) {
    const auto destination = resolver_->resolve(value);
    if (!destination) return "null";
    const PageTree::Page& page = source_->document.pages().pages()[destination->page];
    if (page.number == 0 || (overlay.find(page.number) == 0 && !source_->copier.isTaken(page.number))) return "null";
    std::string text = "[";
    Object(Reference{page.number, page.generation}).write(text);
    return text + destination->view + ']';
}

bool DestinationJoiner::mayReplace(std::string_view destination) const {
    const auto text = plainString(destination);
    const auto place = text ? table().findInTree(*text) : std::nullopt;
    if (!place) return true;
    if (allStay_) return false;
    return !entries_[*place].stays;
}

std::optional<std::string> DestinationJoiner::replacement(std::string_view destination, const Overlay* overlay) {
    if (const auto plain = plainText(destination)) return renamed(*plain, destination.front() == '/', overlay);
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
    // Longer than any destination or sensible name; such a one is not to be written into every link.
    constexpr std::size_t longest = 1024;
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
    std::string written;
    if (value.string() || value.name() || value.array()) value.write(written);
    if (!written.empty() && written.size() <= longest) place->second = std::move(value);
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
