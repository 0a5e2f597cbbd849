#include "pdf/join/DocumentJoiner.h"

#include <algorithm>
#include <unordered_set>

namespace quillon::pdf {

DocumentJoiner::DocumentJoiner(const std::vector<SourcePlan>& sources, const DocumentPlan& plan)
    : sources_(sources), plan_(plan), joinsNames_(joins("Names") || joins("Dests")) {}

bool DocumentJoiner::joins(std::string_view key) const {
    return std::ranges::any_of(sources_, [&](const SourcePlan& plan) {
        if (!plan.source()->catalogKeys().has(key)) return false;
        return plan.source() != plan_.base ||
               std::ranges::any_of(plan.copies(), [](const SourcePlan::Copy& copy) { return !copy.first; });
    });
}

std::vector<std::string_view> DocumentJoiner::catalogKeys() const {
    std::vector<std::string_view> keys;
    if (joinsNames_) keys.insert(keys.end(), {"Dests", "Names"});
    return keys;
}

void DocumentJoiner::begin(const SourcePlan& plan, SourceDocument& document, SourceCopier& copier) {
    ++ordinal_;
    if (!document.catalog()) return;
    const Object catalog = document.reader().parse(*document.catalog());
    if (!catalog.dictionary()) return;
    catalog_ = *catalog.dictionary();
    std::unordered_set<std::uint32_t> taken;
    for (const SourcePlan::Copy& copy : plan.copies()) taken.insert(copy.sourcePage);
    source_.emplace(SourceCopies{plan, document, copier, catalog_, ordinal_, plan.source() == plan_.base,
                                 taken.size() >= document.pages().pages().size()});
    if (joinsNames_) {
        destinations_.begin(*source_);
        copier.setEditor(this);
    }
}

void DocumentJoiner::end() {
    if (!source_) return;
    if (joinsNames_) {
        destinations_.end(*source_);
        takeNames();
    }
    source_.reset();
}

/// The other name trees of the source (ISO 32000-2, 7.7.4), each source's once.
void DocumentJoiner::takeNames() {
    ObjectReader& reader = source_->document.reader();
    const Object names = reader.resolve(catalog_["Names"]);
    if (!names.dictionary()) return;
    for (const auto& [key, value] : names.dictionary()->entries()) {
        const auto tree = std::ranges::find(trees_, key, &NamedTree::key);
        if (tree != trees_.end()) {
            for (const auto& [name, entry] : readNameTree(reader, value)) {
                tree->names.set(tree->names.reserve(name, ordinal_), source_->copied(entry));
            }
        } else if (source_->isBase && key != "Dests") {
            writeName(otherNames_, key);
            otherNames_ += ' ' + source_->copied(value);
        }
    }
}

void DocumentJoiner::write(ObjectOutput& output, std::string& catalogEntries) {
    std::string names = otherNames_;
    const auto add = [&](std::string_view key, JoinedNames& tree) {
        if (tree.empty()) return;
        writeName(names, key);
        names += ' ' + std::to_string(tree.write(output)) + " 0 R";
    };
    add("Dests", destinations_.names());
    for (NamedTree& tree : trees_) add(tree.key, tree.names);
    if (!names.empty()) catalogEntries += "/Names<<" + names + ">>";
}

ObjectEditor::Verdict DocumentJoiner::edit(const Copied& object, std::string_view text, std::string& changed) {
    return destinations_.edit(text, object.overlay, changed) ? Verdict::Change : Verdict::Keep;
}

}  // namespace quillon::pdf
