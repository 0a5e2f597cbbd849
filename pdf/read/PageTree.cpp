#include "pdf/read/PageTree.h"

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"

namespace quillon::pdf {

namespace {

bool isNode(std::string_view dictionary) {
    bool hasKids = false;
    bool saysPage = false;
    DictionaryScanner scanner(dictionary);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        if (keyIs(entry.key, "Kids")) hasKids = true;
        if (keyIs(entry.key, "Type")) saysPage = entry.value == "/Page";
    }
    return hasKids && !saysPage;
}

/// Trees of at least this many pages are read without visiting every page, if their counts add up.
constexpr std::size_t largeTree = 256;

/// Without the key of the file, pages in enciphered object streams cannot be told from nodes; their count is right all
/// the same.
bool mayBePage(ObjectReader& reader, const PageTree::Page& page) {
    if (reader.decryptor() && reader.decryptor()->isLocked()) return true;
    const auto object = reader.findWhole({page.number, page.generation});
    if (!object) return false;
    std::string repaired;
    const std::string_view text = soundDictionary(object->value(), repaired);
    return !text.empty() && !isNode(text);
}

}  // namespace

// To know that a kid is a page and not a node, it must be looked at, and in a large file that inflates nearly every
// object stream before the first page is shown. A node whose Count equals the number of its kids can only hold pages,
// unless the counts lie: so a large tree is believed as long as all its counts agree with each other, and any other is
// walked. One that counts kids instead of pages throughout is found out by its first or last page. A tree can still
// hold nodes in the place of other pages; who meets one reads it again without believing it.

PageTree::PageTree(ObjectReader& reader, const Object& root, bool believeCounts) {
    if (believeCounts) {
        walk(reader, root, true);
        const bool isLarge = countsAddUp_ && pages_.size() >= largeTree;
        if (isLarge && mayBePage(reader, pages_.front()) && mayBePage(reader, pages_.back())) return;
    }
    pages_.clear();
    nodes_.clear();
    directPages_.clear();
    seenNodes_.clear();
    visits_ = 0;
    walk(reader, root, false);
}

PageTree::PageTree(const std::vector<Reference>& pages) {
    nodes_.emplace_back();
    for (const Reference page : pages) pages_.push_back({page.number, page.generation, 0, 0});
}

void PageTree::walk(ObjectReader& reader, const Object& root, bool trustCounts) {
    std::vector<Level> levels;
    if (const Reference* reference = root.reference()) {
        const auto object = reader.findWhole(*reference);
        if (object) enter(reader, object->text(), reference->number, -1, trustCounts, levels);
    } else if (root.dictionary()) {
        std::string text;
        root.write(text);
        enter(reader, text, 0, -1, trustCounts, levels);
    }
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.kids.size()) {
            countsAddUp_ = countsAddUp_ && static_cast<std::int64_t>(pages_.size() - level.firstPage) == level.stated;
            levels.pop_back();
            continue;
        }
        const Object kid = level.kids[level.next++];
        visit(reader, kid, trustCounts, levels);
    }
}

void PageTree::enter(ObjectReader& reader, std::string_view text, std::uint32_t number, std::int64_t parent,
                     bool trustCounts, std::vector<Level>& levels) {
    if (number != 0 && !seenNodes_.insert(number).second) {
        reader.warnings().add("the page tree leads back to a node; its second place is left out", number);
        countsAddUp_ = false;
        return;
    }
    Node node{number, parent, {}};
    Level level;
    level.node = static_cast<std::uint32_t>(nodes_.size());
    level.firstPage = pages_.size();
    std::string repaired;
    std::string_view kids;
    std::string_view count;
    DictionaryScanner scanner(soundDictionary(text, repaired));
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        for (std::size_t i = 0; i < inheritedAttributeNames.size(); ++i) {
            if (!keyIs(entry.key, inheritedAttributeNames[i])) continue;
            if (!reader.isNull(entry.value)) node.attributes[i] = entry.value;
        }
        if (keyIs(entry.key, "Kids")) kids = entry.value;
        if (keyIs(entry.key, "Count")) count = entry.value;
    }
    const Object kidList = reader.resolve(kids);
    if (kidList.array()) level.kids = *kidList.array();
    level.stated = reader.resolve(count).integer().value_or(-1);
    level.trusted = trustCounts && level.stated == static_cast<std::int64_t>(level.kids.size());
    nodes_.push_back(std::move(node));
    levels.push_back(std::move(level));
}

void PageTree::visit(ObjectReader& reader, const Object& kid, bool trustCounts, std::vector<Level>& levels) {
    if (!reader.mayVisit(++visits_)) {
        reader.warnings().add("the page tree names more pages than the file can hold; the rest is left out");
        levels.clear();
        return;
    }
    const std::uint32_t node = levels.back().node;
    const Reference* reference = kid.reference();
    if (reference && reference->number == 0) reference = nullptr;  // no object has this number
    if (levels.back().trusted && reference && reader.exists(*reference)) {
        pages_.push_back({reference->number, reference->generation, node, 0});
        return;
    }
    std::string direct;
    std::optional<ObjectText> object;
    if (reference) {
        object = reader.findWhole(*reference);
    } else if (kid.dictionary()) {
        kid.write(direct);
    }
    std::string repaired;
    const std::string_view text = soundDictionary(object ? object->value() : std::string_view(direct), repaired);
    if (text.empty()) {
        reader.warnings().add("an entry of the page tree is no page; it is left out",
                              reference ? reference->number : 0);
        countsAddUp_ = false;
        return;
    }
    if (isNode(text)) {
        enter(reader, text, reference ? reference->number : 0, node, trustCounts, levels);
        return;
    }
    Page page{0, 0, node, 0};
    if (reference) {
        page.number = reference->number;
        page.generation = reference->generation;
    } else {
        page.direct = static_cast<std::uint32_t>(directPages_.size());
        directPages_.emplace_back(text);
    }
    pages_.push_back(page);
}

std::int64_t PageTree::inheritedFrom(const Page& page, InheritedAttribute attribute) const noexcept {
    for (std::int64_t node = page.node; node >= 0; node = nodes_[static_cast<std::size_t>(node)].parent) {
        if (!nodes_[static_cast<std::size_t>(node)].attributes[static_cast<std::size_t>(attribute)].empty())
            return node;
    }
    return -1;
}

std::string_view PageTree::inherited(const Page& page, InheritedAttribute attribute) const noexcept {
    const std::int64_t node = inheritedFrom(page, attribute);
    if (node < 0) return {};
    return nodes_[static_cast<std::size_t>(node)].attributes[static_cast<std::size_t>(attribute)];
}

}  // namespace quillon::pdf
