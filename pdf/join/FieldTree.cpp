#include "pdf/join/FieldTree.h"

namespace quillon::pdf {

namespace {

/// Some forms list fields that stand below others; the uppermost one is what is meant.
Object uppermost(ObjectReader& reader, const Object& field) {
    constexpr int highest = 64;
    Object top = field;
    for (int i = 0; i < highest; ++i) {
        const Object resolved = reader.resolve(top);
        if (!resolved.dictionary()) break;
        const Object parent = (*resolved.dictionary())["Parent"];
        if (!parent.reference() || !reader.resolve(parent).dictionary()) break;
        top = parent;
    }
    return top;
}

}  // namespace

FieldTree::FieldTree(ObjectReader& reader, const Dictionary& form) {
    const Object fields = reader.resolve(form["Fields"]);
    if (!fields.array()) return;
    for (const Object& field : *fields.array()) {
        if (!reader.mayVisit(nodes_.size())) return;
        add(reader, uppermost(reader, field), none);
        while (!waiting_.empty() && reader.mayVisit(nodes_.size())) {
            const auto [kid, parent] = std::move(waiting_.back());
            waiting_.pop_back();
            add(reader, kid, parent);
        }
        waiting_.clear();
    }
}

void FieldTree::add(ObjectReader& reader, const Object& field, std::uint32_t parent) {
    if (!field.reference()) return;
    const auto place = static_cast<std::uint32_t>(nodes_.size());
    if (places_.contains(field.reference()->number)) return;
    const Object resolved = reader.resolve(field);
    const Dictionary* dictionary = resolved.dictionary();
    if (!dictionary) return;
    places_.emplace(field.reference()->number, place);
    Node& node = nodes_.emplace_back();
    node.reference = *field.reference();
    node.parent = parent;
    const Object type = reader.resolve((*dictionary)["FT"]);
    node.isSignature = type.name() ? type.isName("Sig") : parent != none && nodes_[parent].isSignature;
    const Object kids = reader.resolve((*dictionary)["Kids"]);
    if (!kids.array()) return;
    node.hasKids = !kids.array()->empty();
    for (std::size_t i = kids.array()->size(); i-- > 0;) waiting_.emplace_back((*kids.array())[i], place);
}

std::uint32_t FieldTree::find(std::uint32_t object) const {
    const auto found = places_.find(object);
    return found == places_.end() ? none : found->second;
}

}  // namespace quillon::pdf
