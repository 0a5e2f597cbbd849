#include "pdf/join/LinkScanner.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"

namespace quillon::pdf {

LinkScanner::Key LinkScanner::keyOf(std::string_view name) noexcept {
    if (name == "S") return Key::Action;
    if (name == "D") return Key::D;
    if (name == "Dest") return Key::Dest;
    if (name == "Subtype") return Key::Kind;
    if (name == "Title") return Key::Title;
    return name == "Parent" ? Key::Parent : Key::Other;
}

bool LinkScanner::scan(std::string_view text) {
    links_.clear();
    open_.clear();
    std::size_t at = skipBlank(text, 0);
    if (at >= text.size() || (text[at] != '[' && text.substr(at, 2) != "<<")) return true;
    do {
        while (at < text.size() && isWhiteSpace(text[at])) ++at;
        if (at >= text.size()) return false;
        const char c = text[at];
        const bool doubled = text.substr(at + 1, 1) == text.substr(at, 1);
        if (isRegular(c)) {
            if (!takeRegular(text, at)) return false;
        } else if (c == '/') {
            if (!takeName(text, at)) return false;
        } else if (c == '[' || (c == '<' && doubled)) {
            if (!open(text, at, c == '<')) return false;
        } else if (c == ']' || (c == '>' && doubled)) {
            if (!close(c == '>')) return false;
            at += c == '>' ? 2 : 1;
        } else if (c == '(' || c == '<') {
            const auto end = skipValue(text, at);
            if (!end || !add(takeKey(), {at, *end, Kind::Text, false})) return false;
            at = *end;
        } else {
            return false;
        }
    } while (!open_.empty());
    return true;
}

/// The key whose value stands next, which is taken with that.
LinkScanner::Key LinkScanner::takeKey() noexcept {
    Open& inner = open_.back();
    const Key key = inner.isDictionary && !inner.expectsKey ? inner.key : Key::Other;
    inner.expectsKey = true;
    if (key == Key::Title) inner.hasTitle = true;
    if (key == Key::Parent) inner.hasParent = true;
    return key;
}

bool LinkScanner::takeName(std::string_view text, std::size_t& at) {
    const std::size_t begin = at++;
    while (at < text.size() && isRegular(text[at])) ++at;
    const std::string_view name = text.substr(begin + 1, at - begin - 1);
    if (name.find('#') != std::string_view::npos) return false;
    Open& inner = open_.back();
    if (inner.isDictionary && inner.expectsKey) {
        inner.expectsKey = false;
        inner.key = keyOf(name);
        return true;
    }
    const Key key = takeKey();
    if (key == Key::Action) inner.goesTo = name == "GoTo";
    if (key == Key::Kind) inner.isLink = name == "Link";
    return add(key, {begin, at, Kind::Name, false});
}

bool LinkScanner::takeRegular(std::string_view text, std::size_t& at) {
    const std::size_t begin = at;
    const Key key = takeKey();
    if (key == Key::D || key == Key::Dest || key == Key::Action) {
        const auto end = skipValue(text, at);
        if (!end) return false;
        at = *end;
        // A type of action that stands elsewhere is looked up by the other path.
        if (text[at - 1] == 'R' && key == Key::Action) return false;
        return text[at - 1] != 'R' || add(key, {begin, at, Kind::Reference, false});
    }
    while (at < text.size() && isRegular(text[at])) ++at;
    return true;
}

bool LinkScanner::open(std::string_view text, std::size_t& at, bool isDictionary) {
    if (open_.size() == static_cast<std::size_t>(Parser::maximumDepth)) return false;
    const Key key = open_.empty() ? Key::Other : takeKey();
    at += isDictionary ? 2 : 1;
    if (!isDictionary && (key == Key::D || key == Key::Dest)) {
        // A page is given by its index if what follows is no reference.
        const std::size_t first = skipBlank(text, at);
        std::size_t behind = first;
        while (behind < text.size() && isDigit(text[behind])) ++behind;
        const std::size_t view = skipBlank(text, behind);
        const bool isPage = behind != first && view < text.size() && text[view] == '/';
        if (isPage && !add(key, {first, behind, Kind::Page, false})) return false;
    }
    open_.push_back({.isDictionary = isDictionary});
    return true;
}

bool LinkScanner::close(bool isDictionary) {
    const Open& inner = open_.back();
    if (inner.isDictionary != isDictionary) return false;
    if (inner.action != none && inner.goesTo) links_[inner.action].leads = true;
    const bool isOutlineItem = inner.hasTitle && inner.hasParent;
    if (inner.destination != none && (inner.isLink || isOutlineItem)) links_[inner.destination].leads = true;
    open_.pop_back();
    return true;
}

/// False for the second value of a key.
bool LinkScanner::add(Key key, Link link) {
    if (key != Key::D && key != Key::Dest) return true;
    std::size_t& place = key == Key::D ? open_.back().action : open_.back().destination;
    if (place != none) return false;
    place = links_.size();
    links_.push_back(link);
    return true;
}

}  // namespace quillon::pdf
