#include "pdf/join/DestinationJoiner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

namespace quillon::pdf {

namespace {

/// Whether `text` has the name `/GoTo`, and not that of an action that leads to another file.
bool hasGoTo(std::string_view text) {
    for (std::size_t at = text.find("/GoTo"); at != std::string_view::npos; at = text.find("/GoTo", at + 1)) {
        const std::size_t end = at + 5;
        if (end >= text.size() || !isRegular(text[end])) return true;
    }
    return false;
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

void DestinationJoiner::end(const SourceCopies& source) {
    for (const Name& name : entries_) {
        if (name.state == State::Kept) joined_.set(name.joined, source.copied(*name.value));
    }
    source_ = nullptr;
    resolver_.reset();
    entries_.clear();
    tree_.clear();
    old_.clear();
    names_ = {};
}

bool DestinationJoiner::isLive(const Object& value) {
    const auto destination = resolver_->resolve(value);
    if (!destination) return false;
    const std::uint32_t page = source_->document.pages().pages()[destination->page].number;
    return page != 0 && source_->copier.isTaken(page);
}

/// What takes the place of a name in a link of a page; nothing if it stays.
std::optional<std::string> DestinationJoiner::replacement(const std::string& name, bool isName,
                                                          const Overlay* overlay) {
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
    if (!isName && entry.joined == name) return std::nullopt;
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

/// The next name or string that is the value of `D` or `Dest`, from `position` on, which moves behind it. `sound` turns
/// false where only the parser can tell.
std::optional<DestinationJoiner::Occurrence> DestinationJoiner::next(std::string_view text, std::size_t& position,
                                                                     bool& sound) const {
    for (std::size_t at = text.find("/D", position); at != std::string_view::npos; at = text.find("/D", position)) {
        // What looks like a key may stand inside a string.
        for (std::size_t open = text.find('(', position); open < at; open = text.find('(', position)) {
            const auto close = skipLiteralString(text, open);
            if (!close) {
                sound = false;
                return std::nullopt;
            }
            position = *close;
        }
        if (position > at) continue;
        const bool ofAction = text.substr(at + 2, 3) != "est";
        std::size_t end = at + (ofAction ? 2 : 5);
        position = at + 2;
        if (end >= text.size() || isRegular(text[end])) continue;
        end = skipBlank(text, end);
        if (end >= text.size()) continue;
        if (text[end] == '[') {
            // A page is given by its index if what follows is no reference.
            const std::size_t begin = skipBlank(text, end + 1);
            std::size_t behind = begin;
            while (behind < text.size() && isDigit(text[behind])) ++behind;
            const std::size_t view = skipBlank(text, behind);
            if (behind == begin || view >= text.size() || text[view] != '/') continue;
            position = behind;
            return Occurrence{begin, behind, false, true, ofAction};
        }
        if (text[end] != '(' && text[end] != '<' && text[end] != '/') continue;
        if (text.substr(end, 2) == "<<") continue;
        const auto close = skipValue(text, end);
        sound = close.has_value();
        if (!sound) return std::nullopt;
        position = *close;
        return Occurrence{end, *close, text[end] == '/', false, ofAction};
    }
    return std::nullopt;
}

bool DestinationJoiner::edit(std::string_view text, const Overlay* overlay, std::string& changed) {
    const bool goTo = hasGoTo(text);
    const bool escaped = text.find('#') != std::string_view::npos;
    if (!goTo && !escaped && text.find("/Dest") == std::string_view::npos) return false;
    const bool plain = !escaped && text.find('%') == std::string_view::npos &&
                       text.find("/GoToR") == std::string_view::npos && text.find("/GoToE") == std::string_view::npos;
    if (!plain) return editThroughParser(text, overlay, changed);
    std::size_t copied = 0;
    std::size_t position = 0;
    bool sound = true;
    while (const auto found = next(text, position, sound)) {
        if (found->ofAction && !goTo) continue;
        const std::string_view value = text.substr(found->begin, found->end - found->begin);
        const Object name = Parser(value).parse();
        const std::string* key = name.string() ? name.string() : name.name() ? &name.name()->value : nullptr;
        if (!key && !found->isPage) continue;
        const auto replaced = key ? replacement(*key, found->isName, overlay) : pageReference(value);
        if (!replaced) continue;
        changed.append(text, copied, found->begin - copied);
        if (isRegular(changed.back()) && isRegular(replaced->front())) changed += ' ';
        changed += *replaced;
        copied = found->end;
    }
    if (!sound) {
        changed.clear();
        return editThroughParser(text, overlay, changed);
    }
    if (copied == 0) return false;
    changed.append(text, copied);
    return true;
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
    const bool goTo = (*dictionary)["S"].isName("GoTo");
    Dictionary result;
    for (const auto& [key, value] : dictionary->entries()) {
        const std::string* name = value.string() ? value.string() : value.name() ? &value.name()->value : nullptr;
        const bool leads = key == "Dest" || (key == "D" && goTo);
        if (leads && value.array() && !value.array()->empty() && value.array()->front().integer()) {
            Array array = *value.array();
            array.front() = Parser(pageReference(std::to_string(*array.front().integer()))).parse();
            result.append(key, Object(std::move(array)));
            changed = true;
            continue;
        }
        const auto replaced = leads && name ? replacement(*name, value.name() != nullptr, overlay) : std::nullopt;
        changed = changed || replaced;
        result.append(key, replaced ? Parser(*replaced).parse() : edited(value, overlay, changed));
    }
    return result;
}

}  // namespace quillon::pdf
