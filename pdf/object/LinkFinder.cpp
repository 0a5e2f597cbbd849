#include "pdf/object/LinkFinder.h"

#include "pdf/object/Characters.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/ValueSkipper.h"

#include <string>

namespace quillon::pdf {

namespace {

/// The name, as written, that `place` belongs to; empty if it belongs to none, or to one that is too long to matter.
std::string_view nameAround(std::string_view text, std::size_t place) noexcept {
    constexpr std::size_t longest = 12;  // `Dest` with every letter escaped
    std::size_t begin = place;
    while (begin > 0 && place - begin <= longest && isRegular(text[begin - 1])) --begin;
    if (begin == 0 || text[begin - 1] != '/') return {};
    std::size_t end = place;
    while (end < text.size() && end - begin <= longest && isRegular(text[end])) ++end;
    return end - begin > longest ? std::string_view() : text.substr(begin, end - begin);
}

enum class Key : std::uint8_t { Other, Action, Kind, Title, Parent, D, Dest };

Key keyOf(std::string_view key) {
    switch (key.size()) {
        case 1:
            if (key == "D") return Key::D;
            return key == "S" ? Key::Action : Key::Other;
        case 4:
            if (key == "Dest") return Key::Dest;
            break;
        case 5:
            if (key == "Title") return Key::Title;
            break;
        case 6:
            if (key == "Parent") return Key::Parent;
            break;
        case 7:
            if (key == "Subtype") return Key::Kind;
            break;
        default:
            break;
    }
    if (key.find('#') == std::string_view::npos) return Key::Other;
    const std::string decoded = decodedKey(key);
    return decoded.find('#') == std::string::npos ? keyOf(decoded) : Key::Other;
}

/// Behind the key of a destination, `D` or `Dest`, that `place` belongs to; 0 if it belongs to none.
std::size_t afterDestinationKey(std::string_view text, std::size_t place) {
    if (text[place] == 'D') {
        // No key has this letter but at its beginning, and most names that begin so go on with something else.
        if (place == 0 || text[place - 1] != '/') return 0;
        if (place + 1 < text.size() && !isRegular(text[place + 1])) return place + 1;
        if (place + 1 < text.size() && text[place + 1] != 'e') return 0;
    }
    const std::string_view name = nameAround(text, place);
    const Key key = keyOf(name);
    if (key != Key::D && key != Key::Dest) return 0;
    return static_cast<std::size_t>(name.data() - text.data()) + name.size();
}

/// What makes a destination of an entry: what else the dictionary says.
struct Surroundings {
    bool goesTo = false;
    bool isLink = false;
    bool hasTitle = false;
    bool hasParent = false;
    bool isUnsure = false;

    void take(Key key, std::string_view value) {
        if (key == Key::Title) hasTitle = true;
        if (key == Key::Parent) hasParent = true;
        if (key != Key::Action && key != Key::Kind) return;
        // A name that stands elsewhere.
        if (isDigit(value.front())) isUnsure = true;
        if (!value.starts_with('/')) return;
        if (key == Key::Action) goesTo = keyIs(value.substr(1), "GoTo");
        if (key == Key::Kind) isLink = keyIs(value.substr(1), "Link");
    }
};

/// Whether the first element of the array at the beginning of `text`, which need not be closed, is a reference: that of
/// a page.
bool namesPage(std::string_view text) {
    const std::size_t begin = skipBlank(text, 1);
    if (begin == text.size() || !isDigit(text[begin])) return false;
    const auto end = skipValue(text, begin);
    return end && text[*end - 1] == 'R';
}

}  // namespace

std::string_view destinationBehind(std::string_view text, std::size_t place) {
    const std::size_t afterKey = afterDestinationKey(text, place);
    if (afterKey == 0) return {};
    const std::size_t begin = skipBlank(text, afterKey);
    const char first = begin < text.size() ? text[begin] : '\0';
    if (first == '[' && namesPage(text.substr(begin))) return {};
    const auto end = first == '(' ? skipLiteralString(text, begin) : skipValue(text, begin);
    if (!end) return {};
    const std::string_view value = text.substr(begin, *end - begin);
    if (first == '[') return value;
    const bool isString = first == '(' || (first == '<' && !value.starts_with("<<"));
    return isString || first == '/' || (isDigit(first) && value.back() == 'R') ? value : std::string_view();
}

FoundLink findLink(std::string_view text, std::size_t dictionary, std::size_t place) {
    const std::string_view name = nameAround(text, place);
    const Key sought = keyOf(name);
    FoundLink found;
    Surroundings around;
    unsigned times = 0;
    DictionaryScanner scanner(text.substr(dictionary));
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        const Key key = keyOf(entry.key);
        around.take(key, entry.value);
        if (key == sought) ++times;
        if (entry.key.data() != name.data()) continue;
        found.begin = static_cast<std::size_t>(entry.value.data() - text.data());
        found.end = found.begin + entry.value.size();
    }
    found.looked = scanner.position();
    const bool isItem = around.isLink || (around.hasTitle && around.hasParent);
    if (!scanner.valid() || around.isUnsure || times > 1) {
        found.kind = FoundLink::Kind::Unsure;
    } else if (found.end != 0 && (sought == Key::D ? around.goesTo : isItem)) {
        found.kind = FoundLink::Kind::Destination;
    }
    return found;
}

}  // namespace quillon::pdf
