#include "pdf/join/StructureJoiner.h"

#include "pdf/object/Parser.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

std::string referenceTo(std::uint32_t number) {
    return std::to_string(number) + " 0 R";
}

/// Whether the text may have the entry of an annotation, and not only that of a page.
bool hasStructParent(std::string_view text) {
    constexpr std::string_view key = "/StructParent";
    for (std::size_t at = text.find(key); at != std::string_view::npos; at = text.find(key, at + 1)) {
        if (text.substr(at + key.size(), 1) != "s") return true;
    }
    return false;
}

bool isTrue(ObjectReader& reader, const Object& value) {
    const Object resolved = reader.resolve(value);
    return resolved.boolean() && *resolved.boolean();
}

/// Whether an object of the source has a copy in the group.
bool isCopied(const SourceCopies& source, const Object& value, std::uint32_t group) {
    if (!value.reference()) return false;
    const std::uint32_t number = value.reference()->number;
    const Overlay* const overlay = source.pages.overlay(group);
    if (!overlay) return source.copier.isTaken(number);
    return overlay->covers(number) && overlay->find(number) != Overlay::none;
}

}  // namespace

void StructureJoiner::begin(const SourceCopies& source) {
    groups_.clear();
    parentTree_.clear();
    unlabelled_.clear();
    empty_.clear();
    visits_ = 0;
    const Object& root = source.catalog["StructTreeRoot"];
    const Object resolved = source.reader().resolve(root);
    isTagged_ = resolved.dictionary() && root.reference();
    if (!isTagged_) return;
    if (root_ == 0) root_ = output_->reserve();
    ownRoot_ = root.reference()->number;
    source.copier.announce(ownRoot_, root_);
    groups_.resize(source.pages.groups());
    // Before any link to an element is copied it must be known which copy it leads to.
    if (source.isWhole) maps_.add(source, *resolved.dictionary());
    travels_ = travels(source, *resolved.dictionary());
    const Object marks = source.reader().resolve(source.catalog["MarkInfo"]);
    if (!marks.dictionary()) return;
    marked_ = marked_ || isTrue(source.reader(), (*marks.dictionary())["Marked"]);
    suspect_ = suspect_ || isTrue(source.reader(), (*marks.dictionary())["Suspects"]);
}

std::string StructureJoiner::key(std::string_view key, std::uint32_t group) {
    if (!isTagged_ || group >= groups_.size()) return {};
    const auto old = Parser(key).parse().integer();
    if (!old) return {};
    const auto [place, isNew] = groups_[group].keys.try_emplace(*old, nextKey_);
    if (isNew) groups_[group].order.emplace_back(*old, nextKey_++);
    return std::to_string(place->second);
}

bool StructureJoiner::edit(const SourceCopies& source, const ObjectEditor::Copied& object, std::uint32_t group,
                           std::string_view text, std::string& changed) {
    // A link to an element would take along all elements of the source, if they are not written anew.
    const bool dropsElements = group != 0 || !isTagged_ || !travels_;
    const bool mayHaveKey = hasStructParent(text);
    const bool mayHaveElement = dropsElements && text.find("/SD") != std::string_view::npos;
    const bool isUnlabelled = unlabelled_.contains(object.source);
    if (!mayHaveKey && !mayHaveElement && !isUnlabelled) return false;
    bool any = false;
    Object result = edited(Parser(text).parse(), group, dropsElements, any);
    if (isUnlabelled && result.dictionary() && (*result.dictionary())["Lang"].isNull()) {
        Dictionary labelled = *result.dictionary();
        labelled.append("Lang", Object(language_));
        result = Object(std::move(labelled));
        any = true;
    }
    if (!any) return false;
    // What the element of an annotation must know when it is written.
    if (group != 0 && object.overlay && object.source != 0)
        source.pages.overlay(group)->set(object.source, object.output);
    result.write(changed);
    return true;
}

Object StructureJoiner::edited(const Object& object, std::uint32_t group, bool dropsElements, bool& changed) {
    if (const Array* array = object.array()) {
        Array result;
        for (const Object& element : *array) result.push_back(edited(element, group, dropsElements, changed));
        return result;
    }
    const Dictionary* dictionary = object.dictionary();
    if (!dictionary) return object;
    Dictionary result;
    for (const auto& [name, value] : dictionary->entries()) {
        if (name == "StructParent") {
            std::string text;
            value.write(text);
            const std::string joined = key(text, group);
            if (!joined.empty()) result.append(name, Parser(joined).parse());
            changed = true;
        } else if (name == "SD" && dropsElements) {
            changed = true;
        } else {
            result.append(name, edited(value, group, dropsElements, changed));
        }
    }
    return result;
}

void StructureJoiner::end(const SourceCopies& source, const std::string& language) {
    if (!isTagged_) return;
    const Object root = source.reader().resolve(source.catalog["StructTreeRoot"]);
    if (!root.dictionary()) return;
    language_ = language;
    for (const auto& [key, value] : readNumberTree(source.reader(), (*root.dictionary())["ParentTree"])) {
        parentTree_.try_emplace(key, value);
    }
    bool hasContent = false;
    for (const Group& group : groups_) hasContent = hasContent || !group.order.empty();
    if (hasContent && !source.isWhole) maps_.add(source, *root.dictionary());
    std::uint64_t unasked = 0;  // elements of copies that were not asked for
    for (std::uint32_t group = 0; group < groups_.size(); ++group) {
        if (group == 0 && travels_) {
            moveWhole(source, *root.dictionary());
            continue;
        }
        if (!source.pages.isAsked(group) && !source.reader().mayVisit(unasked)) continue;
        writeAnew(source, *root.dictionary(), group);
        if (!source.pages.isAsked(group)) unasked += groups_[group].elements.size();
    }
    parentTree_.clear();
}

/// Whether the elements can stay as they are.
bool StructureJoiner::travels(const SourceCopies& source, const Dictionary& root) {
    if (!source.isWhole || maps_.hasRenamed()) return false;
    for (const auto& [id, element] : readNameTree(source.reader(), root["IDTree"])) {
        if (ids_.contains(id)) return false;
    }
    return true;
}

void StructureJoiner::moveWhole(const SourceCopies& source, const Dictionary& root) {
    const Object kids = source.reader().resolve(root["K"]);
    const Array elements = kids.array() ? *kids.array() : Array{root["K"]};
    for (const Object& element : elements) {
        if (!element.reference()) continue;
        if (!language_.empty()) unlabelled_.insert(element.reference()->number);
        kids_ += source.copied(element) + ' ';
    }
    std::unordered_set<std::string> seen;
    for (const auto& [id, element] : readNameTree(source.reader(), root["IDTree"])) {
        if (!seen.emplace(id).second) continue;
        ids_.set(ids_.reserve(id, source.ordinal), source.copied(element));
    }
    for (const auto& [old, joined] : groups_[0].order) {
        const auto parents = parentTree_.find(old);
        if (parents != parentTree_.end()) parents_.emplace_back(joined, source.copied(parents->second));
    }
}

void StructureJoiner::writeAnew(const SourceCopies& source, const Dictionary& root, std::uint32_t group) {
    Group& own = groups_[group];
    ObjectReader& reader = source.reader();
    visits_ = 0;
    for (const auto& [old, joined] : own.order) {
        const auto found = parentTree_.find(old);
        if (found == parentTree_.end()) continue;
        const Object value = reader.resolve(found->second);
        if (!value.array()) keep(source, found->second, own);
        if (!value.array()) continue;
        for (const Object& element : *value.array()) keep(source, element, own);
    }
    if (group == 0 && source.isWhole) keepKids(source, root["K"], own, true);
    for (std::size_t i = 0; i < own.elements.size(); ++i) {
        const Object element = reader.parse(own.elements[i].reference);
        if (element.dictionary()) keepKids(source, (*element.dictionary())["K"], own, group == 0 && source.isWhole);
    }
    Overlay* const overlay = source.pages.overlay(group);
    for (Element& element : own.elements) {
        element.number = output_->reserve();
        const std::uint32_t old = element.reference.number;
        overlay ? overlay->set(old, element.number) : source.copier.announce(old, element.number);
    }
    const Object kids = reader.resolve(root["K"]);
    const Array tops = kids.array() ? *kids.array() : Array{root["K"]};
    for (const Object& element : tops) {
        const auto place = element.reference() ? own.places.find(element.reference()->number) : own.places.end();
        if (place == own.places.end() || own.elements[place->second].parent != top) continue;
        if (std::exchange(own.elements[place->second].isListed, true)) continue;
        kids_ += referenceTo(own.elements[place->second].number) + ' ';
    }
    for (const Element& element : own.elements) {
        writeElement(source, element, group, element.parent == top ? language_ : std::string());
    }
    for (const auto& [old, joined] : own.order) {
        const auto found = parentTree_.find(old);
        const std::string text = found == parentTree_.end() ? "" : parents(source, found->second, group);
        if (!text.empty()) parents_.emplace_back(joined, text);
    }
}

/// Keeps an element, and those above it.
void StructureJoiner::keep(const SourceCopies& source, const Object& element, Group& group) {
    ObjectReader& reader = source.reader();
    Object next = element;
    std::uint32_t below = top;  // the one whose parent is looked for
    while (next.reference() && next.reference()->number != ownRoot_ && reader.mayVisit(group.elements.size())) {
        const auto place = static_cast<std::uint32_t>(group.elements.size());
        const auto [known, isNew] = group.places.try_emplace(next.reference()->number, place);
        const Object resolved = isNew ? reader.resolve(next) : Object();
        if (isNew && !resolved.dictionary()) {
            group.places.erase(known);
            return;
        }
        if (below != top) group.elements[below].parent = known->second;
        if (!isNew) return;
        group.elements.push_back({*next.reference(), top, 0, false});
        const Object id = reader.resolve((*resolved.dictionary())["ID"]);
        if (id.string() && !group.ids.contains(*id.string())) {
            group.ids.emplace(*id.string(), ids_.reserve(*id.string(), source.ordinal));
        }
        below = place;
        next = Object((*resolved.dictionary())["P"]);
    }
}

/// Keeps those of the elements `kids` that have no content anywhere, as cells of a table may; with `all` every one.
void StructureJoiner::keepKids(const SourceCopies& source, const Object& kids, Group& group, bool all) {
    // More than any row has; the elements of a long text are not all looked at for the sake of one page.
    constexpr std::size_t most = 1000;
    if (!mayVisit(source)) return;
    const Object resolved = source.reader().resolve(kids);
    const Array elements = resolved.array() ? *resolved.array() : Array{kids};
    visits_ += elements.size();
    if (!all && elements.size() > most) return;
    for (const Object& element : elements) {
        if (!element.reference() || group.places.contains(element.reference()->number)) continue;
        if (all ? isElement(source, element) : isEmpty(source, element, 0)) keep(source, element, group);
    }
}

bool StructureJoiner::isElement(const SourceCopies& source, const Object& value) {
    const Object resolved = source.reader().resolve(value);
    return resolved.dictionary() && !(*resolved.dictionary())["S"].isNull();
}

bool StructureJoiner::isEmpty(const SourceCopies& source, const Object& value, int depth) {
    constexpr int deepest = 4;
    if (depth > deepest || !value.reference()) return false;
    const std::uint64_t key = std::uint64_t{value.reference()->number} * (deepest + 1) + static_cast<unsigned>(depth);
    const auto known = empty_.find(key);
    if (known != empty_.end()) return known->second;
    const Object resolved = source.reader().resolve(value);
    const bool empty = resolved.dictionary() && !(*resolved.dictionary())["S"].isNull() &&
                       areEmpty(source, (*resolved.dictionary())["K"], depth + 1);
    empty_[key] = empty;
    return empty;
}

bool StructureJoiner::areEmpty(const SourceCopies& source, const Object& kids, int depth) {
    if (!mayVisit(source)) return false;
    const Object list = source.reader().resolve(kids);
    if (list.isNull()) return true;
    const Array elements = list.array() ? *list.array() : Array{kids};
    visits_ += elements.size();
    return std::ranges::all_of(elements, [&](const Object& kid) { return isEmpty(source, kid, depth); });
}

/// Whether lists of kids, which elements may share, are still looked into.
bool StructureJoiner::mayVisit(const SourceCopies& source) const {
    constexpr std::uint64_t looks = 16;  // at each kid, from elements above it and when it is written
    return source.reader().mayVisit(visits_ / looks);
}

void StructureJoiner::writeElement(const SourceCopies& source, const Element& element, std::uint32_t group,
                                   const std::string& language) {
    Group& own = groups_[group];
    const Overlay* const overlay = source.pages.overlay(group);
    const Object parsed = source.reader().parse(element.reference);
    if (!parsed.dictionary()) return;
    const Dictionary& entries = *parsed.dictionary();
    const std::uint32_t parent = element.parent == top ? root_ : own.elements[element.parent].number;
    std::string text = "<</P " + referenceTo(parent);
    for (const auto& [key, value] : entries.entries()) {
        std::string written;
        if (key == "P" || (key == "Pg" && !isCopied(source, value, group))) continue;
        if (key == "K") {
            const auto index = static_cast<std::uint32_t>(&element - own.elements.data());
            written = kids(source, value, entries["Pg"], group, index);
        } else if (key == "A") {
            written = attributes(source, value, group);
        } else if (key == "S") {
            written = source.copied(maps_.role(source.reader().resolve(value)));
        } else if (key == "C") {
            written = source.copied(maps_.classes(source.reader().resolve(value)));
        } else if (key == "Ref") {
            written = parents(source, value, group);
        } else if (key == "ID") {
            const Object id = source.reader().resolve(value);
            const auto reserved = id.string() ? own.ids.find(*id.string()) : own.ids.end();
            if (reserved == own.ids.end()) continue;
            writeString(written, ids_.nameAt(reserved->second));
            ids_.set(reserved->second, referenceTo(element.number));
        } else {
            written = source.copied(value, overlay);
        }
        if (written.empty()) continue;
        writeName(text, key);
        text += ' ' + written;
    }
    if (!language.empty() && entries["Lang"].isNull()) {
        text += "/Lang";
        writeString(text, language);
    }
    text += ">>";
    if (!source.charge(text.size(), group)) text = "null";
    output_->addObject(element.number, text);
}

/// The kids of an element that are content of the group or elements that stay; empty when there are none. `page` is
/// that of the element.
std::string StructureJoiner::kids(const SourceCopies& source, const Object& value, const Object& page,
                                  std::uint32_t group, std::uint32_t parent) {
    if (!mayVisit(source)) return {};
    const Object resolved = source.reader().resolve(value);
    if (!resolved.array()) return kid(source, value, page, group, parent);
    visits_ += resolved.array()->size();
    std::string text;
    for (const Object& element : *resolved.array()) {
        const std::string one = kid(source, element, page, group, parent);
        if (!one.empty()) text += ' ' + one;
    }
    return text.empty() ? text : '[' + text + ']';
}

std::string StructureJoiner::kid(const SourceCopies& source, const Object& value, const Object& page,
                                 std::uint32_t group, std::uint32_t parent) {
    if (value.integer()) return isCopied(source, page, group) ? std::to_string(*value.integer()) : std::string();
    if (value.reference()) {
        const auto element = groups_[group].places.find(value.reference()->number);
        if (element != groups_[group].places.end()) {
            // What several elements list stands below its own parent, or else the first of them.
            Element& own = groups_[group].elements[element->second];
            if (own.isListed || (own.parent != top && own.parent != parent)) return {};
            own.isListed = true;
            return referenceTo(own.number);
        }
    }
    const Object resolved = source.reader().resolve(value);
    if (!resolved.dictionary()) return {};
    const Dictionary& content = *resolved.dictionary();
    const bool isMarked = content["MCID"].integer().has_value();
    const bool isObject = !content["Obj"].isNull();
    if (isMarked == isObject) return {};  // an element that does not stay
    if (!isCopied(source, content["Pg"].isNull() ? page : content["Pg"], group)) return {};
    // Copies of a page share the streams of its forms, whose content belongs to the elements of the first copy.
    if (isMarked && group != 0 && !content["Stm"].isNull()) return {};
    if (isObject && !isCopied(source, content["Obj"], group)) return {};
    return source.copied(resolved, source.pages.overlay(group));
}

/// An attribute may name other elements by their identifiers: the headers of a cell.
std::string StructureJoiner::attributes(const SourceCopies& source, const Object& value, std::uint32_t group) {
    const Overlay* const overlay = source.pages.overlay(group);
    bool any = false;
    if (groups_[group].ids.empty()) return source.copied(value, overlay);
    const Object changed = withIds(source, value, groups_[group], 0, any);
    return source.copied(any ? changed : value, overlay);
}

Object StructureJoiner::withIds(const SourceCopies& source, const Object& value, const Group& group, int depth,
                                bool& any) {
    constexpr int deepest = 4;
    const Object resolved = source.reader().resolve(value);
    if (const Array* array = resolved.array(); array && depth < deepest) {
        Array result;
        for (const Object& element : *array) result.push_back(withIds(source, element, group, depth + 1, any));
        return result;
    }
    const Dictionary* dictionary = resolved.dictionary();
    if (!dictionary || (*dictionary)["Headers"].isNull()) return value;
    Dictionary result;
    for (const auto& [key, entry] : dictionary->entries()) {
        const Object headers = key == "Headers" ? source.reader().resolve(entry) : Object();
        if (!headers.array()) {
            result.append(key, entry);
            continue;
        }
        Array renamed;
        for (const Object& header : *headers.array()) {
            const auto id = header.string() ? group.ids.find(*header.string()) : group.ids.end();
            renamed.push_back(id == group.ids.end() ? header : Object(std::string(ids_.nameAt(id->second))));
        }
        result.append(key, Object(std::move(renamed)));
        any = true;
    }
    return result;
}

/// References to elements, null for those that do not stay; empty when none stays.
std::string StructureJoiner::parents(const SourceCopies& source, const Object& value, std::uint32_t group) {
    const Group& own = groups_[group];
    const auto element = [&](const Object& reference) -> std::string {
        const auto place = reference.reference() ? own.places.find(reference.reference()->number) : own.places.end();
        return place == own.places.end() ? std::string() : referenceTo(own.elements[place->second].number);
    };
    const Object resolved = source.reader().resolve(value);
    if (!resolved.array()) return element(value);
    std::string text;
    bool any = false;
    for (const Object& reference : *resolved.array()) {
        const std::string one = element(reference);
        any = any || !one.empty();
        text += ' ' + (one.empty() ? "null" : one);
    }
    return any ? '[' + text + ']' : std::string();
}

std::string StructureJoiner::write() {
    if (root_ == 0 || (kids_.empty() && parents_.empty())) return {};
    std::ranges::sort(parents_, {}, &std::pair<std::int64_t, std::string>::first);
    std::string text = "<</Type/StructTreeRoot/K[" + kids_ + ']' + maps_.text();
    if (!parents_.empty()) {
        text += "/ParentTree " + referenceTo(writeNumberTree(*output_, parents_)) + "/ParentTreeNextKey " +
                std::to_string(nextKey_);
    }
    if (!ids_.empty()) text += "/IDTree " + referenceTo(ids_.write(*output_));
    output_->addObject(root_, text + ">>");
    std::string marks = marked_ ? "/Marked true" : "";
    if (suspect_) marks += "/Suspects true";
    return "/StructTreeRoot " + referenceTo(root_) + (marks.empty() ? "" : "/MarkInfo<<" + marks + ">>");
}

}  // namespace quillon::pdf
