#include "pdf/join/FieldTree.h"

#include "pdf/join/FieldNames.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"

#include <algorithm>

namespace quillon::pdf {

FieldTree::FieldTree(ObjectReader& reader, const Dictionary& form) : places_(reader.file().file().size()) {
    const Object fields = reader.resolve(form["Fields"]);
    if (!fields.array()) return;
    for (const Object& field : *fields.array()) {
        if (!reader.mayVisit(nodes_.size())) return;
        if (field.reference()) {
            addFrom(reader, *field.reference(), true);
        } else {
            addDirect(reader, field, none);
            addWaiting(reader);
        }
    }
}

bool FieldTree::mayMissFields() const {
    return std::ranges::any_of(nodes_, [](const Node& node) { return node.kids == 0 && !node.isAnnotation; });
}

void FieldTree::adopt(ObjectReader& reader, Reference object) {
    if (find(object.number) != none || !reader.mayVisit(nodes_.size())) return;
    // Most are links and comments, and there may be very many.
    const auto found = reader.find(object);
    const std::size_t end = found ? found->text().find("endobj") : 0;
    const bool isWhole = found && (!found->inFile || end != std::string_view::npos);
    if (isWhole && found->text().substr(0, end).find("Parent") == std::string_view::npos) return;
    addFrom(reader, object, false);
}

/// Adds a field with those above it, since some forms list fields that stand below others, and those below.
void FieldTree::addFrom(ObjectReader& reader, Reference field, bool mayBeTop) {
    constexpr std::size_t highest = 64;
    std::vector<std::pair<Reference, Entries>> path;
    std::uint32_t above = none;
    for (Reference next = field; path.size() < highest && above == none;) {
        const auto isNext = [&next](const auto& step) { return step.first.number == next.number; };
        if (strays_.contains(next.number) || std::ranges::any_of(path, isNext)) break;
        Entries entries = look(reader, next);
        if (!entries.isField) break;
        const auto& [reference, own] = path.emplace_back(next, std::move(entries));
        if (!own.parent.reference()) break;
        next = *own.parent.reference();
        above = find(next.number);
    }
    if (above == none && !mayBeTop) {
        for (const auto& step : path) strays_.insert(step.first.number);
        return;
    }
    for (; !path.empty(); path.pop_back()) {
        const auto& [reference, entries] = path.back();
        if (find(reference.number) == none) add(reader, reference, entries, above);
        addWaiting(reader);
        above = find(reference.number);
    }
}

/// Adds what is listed below fields that were added.
void FieldTree::addWaiting(ObjectReader& reader) {
    while (!waiting_.empty() && reader.mayVisit(nodes_.size())) {
        const auto [kid, parent] = std::move(waiting_.back());
        waiting_.pop_back();
        if (kid.reference()) {
            add(reader, *kid.reference(), look(reader, *kid.reference()), parent);
        } else {
            addDirect(reader, kid, parent);
        }
    }
    waiting_.clear();
}

/// Adds a field that stands in the list of the one above it, where a reference should be.
void FieldTree::addDirect(ObjectReader& reader, const Object& field, std::uint32_t parent) {
    if (!field.dictionary()) return;
    while (reader.exists({unused_, 0})) --unused_;
    direct_.emplace(static_cast<std::uint32_t>(nodes_.size()), field);
    add(reader, {unused_--, 0}, entriesOf(field), parent);
}

FieldTree::Entries FieldTree::entriesOf(const Object& dictionary) {
    const Dictionary& field = *dictionary.dictionary();
    return {true, field["FT"], field["Kids"], field["Parent"], field["T"], field["Subtype"]};
}

FieldTree::Entries FieldTree::look(ObjectReader& reader, Reference field) const {
    Entries entries;
    if (find(field.number) != none) return entries;
    auto object = reader.find(field);
    if (!object || takeEntries(object->text(), entries)) return entries;
    object = reader.findWhole(field);
    std::string repaired;
    entries = {};
    if (object) static_cast<void>(takeEntries(soundDictionary(object->text(), repaired), entries));
    return entries;
}

/// The place of the value of an entry; null for one that does not matter.
Object* FieldTree::Entries::at(std::string_view key) noexcept {
    switch (key.size()) {
        case 1:
            return key == "T" ? &name : nullptr;
        case 2:
            return key == "FT" ? &type : nullptr;
        case 4:
            return key == "Kids" ? &kids : nullptr;
        case 6:
            return key == "Parent" ? &parent : nullptr;
        case 7:
            return key == "Subtype" ? &subtype : nullptr;
        default:
            return nullptr;
    }
}

/// False when the text is malformed, or ends too early.
bool FieldTree::takeEntries(std::string_view text, Entries& entries) {
    DictionaryScanner scanner(text);
    entries.isField = scanner.valid();
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        const bool isEscaped = entry.key.find('#') != std::string_view::npos;
        Object* const value = isEscaped ? entries.at(decodedKey(entry.key)) : entries.at(entry.key);
        if (value) *value = Parser(entry.value).parse();
    }
    return scanner.valid();
}

void FieldTree::add(ObjectReader& reader, Reference field, const Entries& entries, std::uint32_t parent) {
    const auto place = static_cast<std::uint32_t>(nodes_.size());
    if (!entries.isField) return;
    places_.at(field.number) = place + 1;
    nodes_.emplace_back();
    nodes_[place].reference = field;
    nodes_[place].parent = parent;
    if (parent != none) {
        ++nodes_[parent].kids;
        const Reference* above = entries.parent.reference();
        nodes_[place].namesParent = above && above->number == nodes_[parent].reference.number;
        nodes_[place].isNamed = nodes_[parent].isNamed;
    }
    takeType(reader, entries, place);
    const Object name = nodes_[place].isNamed ? Object() : reader.resolve(entries.name);
    static const std::string nameless = FieldNames::comparable({});
    std::string comparable = name.string() ? FieldNames::comparable(*name.string()) : nameless;
    if (comparable != nameless) {
        nodes_[place].name = *name.string();
        nodes_[place].comparable = std::move(comparable);
        nodes_[place].isNamed = true;
    }
    nodes_[place].isAnnotation = !entries.subtype.isNull();
    // A list that was read has nothing that is not in the tree.
    if (entries.kids.reference() && !lists_.insert(entries.kids.reference()->number).second) return;
    if (!reader.mayVisit(kids_)) return;
    const Object kids = reader.resolve(entries.kids);
    if (!kids.array()) return;
    kids_ += kids.array()->size();
    for (std::size_t i = kids.array()->size(); i-- > 0;) waiting_.emplace_back((*kids.array())[i], place);
}

void FieldTree::takeType(ObjectReader& reader, const Entries& entries, std::uint32_t field) {
    Node& node = nodes_[field];
    const Object type = reader.resolve(entries.type);
    if (type.name()) {
        node.type = type.isName("Sig") ? Type::Signature : type.isName("Btn") ? Type::Button : Type::Other;
    } else if (node.parent != none) {
        node.type = nodes_[node.parent].type;
    }
    if (node.type != Type::Signature) return;
    node.holdsSignature = true;
    // The value may stand above the type.
    for (std::uint32_t i = node.parent; i != none && nodes_[i].type == Type::None; i = nodes_[i].parent) {
        if (std::exchange(nodes_[i].holdsSignature, true)) break;
    }
}

Object FieldTree::read(ObjectReader& reader, std::uint32_t field) const {
    const auto direct = direct_.find(field);
    return direct == direct_.end() ? reader.parse(nodes_[field].reference) : direct->second;
}

}  // namespace quillon::pdf
