#include "pdf/join/FieldTree.h"

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"

namespace quillon::pdf {

FieldTree::FieldTree(ObjectReader& reader, const Dictionary& form) {
    const Object fields = reader.resolve(form["Fields"]);
    if (!fields.array()) return;
    for (const Object& field : *fields.array()) {
        if (!reader.mayVisit(nodes_.size())) return;
        if (!field.reference()) continue;
        Reference top = *field.reference();
        const Entries entries = uppermost(reader, top);
        add(reader, top, entries, none);
        while (!waiting_.empty() && reader.mayVisit(nodes_.size())) {
            const auto [kid, parent] = std::move(waiting_.back());
            waiting_.pop_back();
            if (kid.reference()) add(reader, *kid.reference(), look(reader, *kid.reference()), parent);
        }
        waiting_.clear();
    }
}

FieldTree::Entries FieldTree::look(ObjectReader& reader, Reference field) const {
    Entries entries;
    if (places_.contains(field.number)) return entries;
    auto object = reader.find(field);
    if (!object || takeEntries(object->text(), entries)) return entries;
    object = reader.findWhole(field);
    std::string repaired;
    entries = {};
    if (object) static_cast<void>(takeEntries(soundDictionary(object->text(), repaired), entries));
    return entries;
}

/// False when the text is malformed, or ends too early.
bool FieldTree::takeEntries(std::string_view text, Entries& entries) {
    DictionaryScanner scanner(text);
    entries.isField = scanner.valid();
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        for (auto& [key, value] : {std::pair<std::string_view, Object*>{"FT", &entries.type},
                                   {"Kids", &entries.kids},
                                   {"Parent", &entries.parent},
                                   {"T", &entries.name}}) {
            if (keyIs(entry.key, key)) *value = Parser(entry.value).parse();
        }
    }
    return scanner.valid();
}

/// Some forms list fields that stand below others; the uppermost one is what is meant.
FieldTree::Entries FieldTree::uppermost(ObjectReader& reader, Reference& field) const {
    constexpr int highest = 64;
    Entries entries = look(reader, field);
    for (int i = 0; i < highest && entries.parent.reference(); ++i) {
        Entries above = look(reader, *entries.parent.reference());
        if (!above.isField) break;
        field = *entries.parent.reference();
        entries = std::move(above);
    }
    return entries;
}

void FieldTree::add(ObjectReader& reader, Reference field, const Entries& entries, std::uint32_t parent) {
    const auto place = static_cast<std::uint32_t>(nodes_.size());
    if (!entries.isField) return;
    places_.emplace(field.number, place);
    Node& node = nodes_.emplace_back();
    node.reference = field;
    node.parent = parent;
    const Object type = reader.resolve(entries.type);
    node.isSignature = type.name() ? type.isName("Sig") : parent != none && nodes_[parent].isSignature;
    const Object name = parent == none ? reader.resolve(entries.name) : Object();
    if (name.string()) node.name = *name.string();
    if (!reader.mayVisit(kids_)) return;
    const Object kids = reader.resolve(entries.kids);
    if (!kids.array()) return;
    kids_ += kids.array()->size();
    node.hasKids = !kids.array()->empty();
    for (std::size_t i = kids.array()->size(); i-- > 0;) waiting_.emplace_back((*kids.array())[i], place);
}

std::uint32_t FieldTree::find(std::uint32_t object) const {
    const auto found = places_.find(object);
    return found == places_.end() ? none : found->second;
}

}  // namespace quillon::pdf
