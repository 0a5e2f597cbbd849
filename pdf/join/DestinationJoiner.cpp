#include "pdf/join/DestinationJoiner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

#include <array>

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

constexpr auto stops = [] {
    std::array<bool, 256> table{};
    for (const char c : std::string_view("/(<%")) table[static_cast<unsigned char>(c)] = true;
    return table;
}();

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

/// Finds what are the values of `D` and `Dest`. False where only the parser can tell what is changed.
bool DestinationJoiner::find(std::string_view text) {
    found_.clear();
    hasGoTo_ = false;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        if (!stops[static_cast<unsigned char>(c)]) {
            ++at;
        } else if (c == '(') {
            const auto end = skipLiteralString(text, at);
            if (!end) return false;
            at = *end;
        } else if (c == '<') {
            const std::size_t end = text.substr(at + 1, 1) == "<" ? at + 1 : text.find('>', at);
            if (end == std::string_view::npos) return false;
            at = end + 1;
        } else if (c == '%') {
            return false;
        } else {
            std::size_t end = at + 1;
            while (end < text.size() && isRegular(text[end])) ++end;
            const std::string_view name = text.substr(at + 1, end - at - 1);
            at = end;
            if (name.find('#') != std::string_view::npos || name == "GoToR" || name == "GoToE") return false;
            if (name == "GoTo") hasGoTo_ = true;
            if ((name == "D" || name == "Dest") && !takeValue(text, at, name == "D")) return false;
        }
    }
    return true;
}

/// Notes the name, string or index of a page that stands behind a key, and moves behind it.
bool DestinationJoiner::takeValue(std::string_view text, std::size_t& at, bool ofAction) {
    const std::size_t begin = skipBlank(text, at);
    if (begin >= text.size()) return false;
    if (text[begin] == '[') {
        // A page is given by its index if what follows is no reference.
        const std::size_t first = skipBlank(text, begin + 1);
        std::size_t behind = first;
        while (behind < text.size() && isDigit(text[behind])) ++behind;
        const std::size_t view = skipBlank(text, behind);
        if (behind == first || view >= text.size() || text[view] != '/') return true;
        found_.push_back({first, behind, false, true, ofAction});
        at = behind;
        return true;
    }
    const bool isText =
        text[begin] == '(' || text[begin] == '/' || (text[begin] == '<' && text.substr(begin + 1, 1) != "<");
    if (!isText) return true;
    const auto end = skipValue(text, begin);
    if (!end) return false;
    found_.push_back({begin, *end, text[begin] == '/', false, ofAction});
    at = *end;
    return true;
}

bool DestinationJoiner::edit(std::string_view text, const Overlay* overlay, std::string& changed) {
    if (!mayLink(text)) return false;
    if (!find(text)) return editThroughParser(text, overlay, changed);
    std::size_t copied = 0;
    for (const Occurrence& found : found_) {
        if (found.ofAction && !hasGoTo_) continue;
        const std::string_view value = text.substr(found.begin, found.end - found.begin);
        const auto replaced = replacementOf(value, found, overlay);
        if (!replaced) continue;
        changed.append(text, copied, found.begin - copied);
        if (isRegular(changed.back()) && isRegular(replaced->front())) changed += ' ';
        changed += *replaced;
        copied = found.end;
    }
    if (copied == 0) return false;
    changed.append(text, copied);
    return true;
}

std::optional<std::string> DestinationJoiner::replacementOf(std::string_view value, const Occurrence& found,
                                                            const Overlay* overlay) {
    if (found.isPage) return pageReference(value);
    if (const auto plain = plainText(value)) return replacement(*plain, found.isName, overlay);
    const Object name = Parser(value).parse();
    if (!name.string() && !name.name()) return std::nullopt;
    return replacement(name.string() ? *name.string() : name.name()->value, found.isName, overlay);
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
