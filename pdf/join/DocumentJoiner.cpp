#include "pdf/join/DocumentJoiner.h"

#include "pdf/join/OpenAction.h"

#include <algorithm>
#include <unordered_set>

namespace quillon::pdf {

DocumentJoiner::DocumentJoiner(const SourcePlans& sources, const DocumentPlan& plan)
    : sources_(sources),
      plan_(plan),
      joinsNames_(joins("Names") || joins("Dests")),
      // Even a form that stays the only one loses its signatures.
      joinsForms_(anyHas("AcroForm")),
      joinsLayers_(joins("OCProperties")),
      // The labels of a base would go on over the pages behind it.
      joinsLabels_(anyHas("PageLabels")),
      joinsStructure_(joins("StructTreeRoot")),
      isBaseTagged_(anyHas("StructTreeRoot") && !joinsStructure_),
      joinsArticles_(joins("Threads")),
      joinsIntents_(joins("OutputIntents")),
      joinsFiles_(joins("AF")),
      forms_(output_),
      labels_(joinsLabels_ ? plan.pages.size() : 0),
      structure_(output_),
      articles_(output_) {}

bool DocumentJoiner::joins(std::string_view key) const {
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        const SourcePlan plan = sources_[i];
        if (!plan.source()->catalogKeys().has(key)) continue;
        if (plan.source() != plan_.base) return true;
        if (std::ranges::any_of(plan.copies(), [](const SourcePlan::Copy& copy) { return !copy.first; })) return true;
    }
    return false;
}

bool DocumentJoiner::anyHas(std::string_view key) const {
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        if (sources_[i].source()->catalogKeys().has(key)) return true;
    }
    return false;
}

std::vector<std::string_view> DocumentJoiner::catalogKeys() const {
    // What proves that a signature is valid is of no use without the signature.
    std::vector<std::string_view> keys{"DSS"};
    const auto add = [&keys](bool joined, std::initializer_list<std::string_view> names) {
        if (joined) keys.insert(keys.end(), names);
    };
    add(joinsNames_, {"Dests", "Names"});
    add(joinsForms_, {"AcroForm", "NeedsRendering"});
    add(joinsLayers_, {"OCProperties"});
    add(joinsLabels_, {"PageLabels"});
    add(joinsStructure_, {"StructTreeRoot", "MarkInfo"});
    add(joinsArticles_, {"Threads"});
    add(joinsIntents_, {"OutputIntents"});
    add(joinsFiles_, {"AF"});
    return keys;
}

void DocumentJoiner::begin(const SourcePlan& plan, SourceSurvey& survey, PageCopies& pages, SourceDocument& document,
                           SourceCopier& copier) {
    ++ordinal_;
    group_ = 0;
    const bool isBase = plan.source() == plan_.base;
    const Object catalog = document.catalog() ? document.reader().parse(*document.catalog()) : Object();
    catalog_ = catalog.dictionary() ? *catalog.dictionary() : Dictionary();
    source_.emplace(SourceCopies{plan, pages, document, copier, catalog_, survey, ordinal_, isBase});
    if (wishesFor(plan).destinations) destinations_.begin(*source_);
    copier.setEditor(this);
    forms_.begin(*source_);
    if (joinsStructure_) structure_.begin(*source_);
    if (joinsArticles_) articles_.begin(*source_);
    takeLanguage();
}

std::string DocumentJoiner::openAction() const {
    return source_ ? pdf::openAction(*source_) : std::string();
}

void DocumentJoiner::takeLanguage() {
    otherLanguage_.clear();
    const Object own = source_->reader().resolve(catalog_["Lang"]);
    if (!own.string() || own.string()->empty()) return;
    if (!language_) {
        language_ = *own.string();
        isLanguageOfBase_ = source_->isBase;
    } else if (*language_ != *own.string()) {
        otherLanguage_ = *own.string();
    }
}

void DocumentJoiner::end() {
    if (!source_) return;
    forms_.end(*source_);
    if (joinsArticles_) articles_.end(*source_);
    if (joinsLabels_) labels_.take(*source_);
    takeLists();
    if (joinsNames_) takeNames();
    if (joinsStructure_) structure_.end(*source_, otherLanguage_);
    source_->copier.drain();
    if (joinsLayers_) layers_.end(*source_);
    // Now that no link is left to come, what they use is known, but for what the names themselves bring along.
    do {
        source_->copier.drain();
    } while (joinsNames_ && destinations_.writeNames());
    source_->copier.setEditor(nullptr);
    destinations_.release();
    source_.reset();
}

void DocumentJoiner::takeLists() {
    if (joinsIntents_) intents_.add(*source_, catalog_["OutputIntents"]);
    if (joinsFiles_) files_.add(*source_, catalog_["AF"]);
}

/// The other name trees of the source (ISO 32000-2, 7.7.4), each source's once.
void DocumentJoiner::takeNames() {
    ObjectReader& reader = source_->reader();
    const Object names = reader.resolve(catalog_["Names"]);
    if (!names.dictionary()) return;
    for (const auto& [key, value] : names.dictionary()->entries()) {
        const auto tree = std::ranges::find(trees_, key, &NamedTree::key);
        if (tree != trees_.end()) {
            std::unordered_set<std::string> seen;
            for (const auto& [name, entry] : readNameTree(reader, value)) {
                if (!seen.emplace(name).second) continue;
                tree->names.set(tree->names.reserve(name, ordinal_), source_->copied(entry));
            }
        } else if (source_->isBase && key != "Dests") {
            writeName(otherNames_, key);
            otherNames_ += ' ' + source_->copied(value);
        }
    }
}

void DocumentJoiner::write(const PageTreeWriter& pages, std::string& catalogEntries) {
    const auto add = [&catalogEntries](std::string_view key, const std::string& text) {
        if (text.empty()) return;
        writeName(catalogEntries, key);
        catalogEntries += ' ' + text;
    };
    writeNames(catalogEntries);
    if (joinsForms_) add("AcroForm", forms_.text());
    if (joinsLayers_) add("OCProperties", layers_.text());
    if (joinsLabels_) add("PageLabels", labels_.write(*output_, pages));
    if (joinsStructure_) catalogEntries += structure_.write();
    add("Threads", articles_.text());
    add("OutputIntents", intents_.text());
    add("AF", files_.text());
    if (!language_ || isLanguageOfBase_) return;
    catalogEntries += "/Lang";
    writeString(catalogEntries, *language_);
}

void DocumentJoiner::writeNames(std::string& catalogEntries) {
    std::string names = otherNames_;
    const auto add = [&](std::string_view key, JoinedNames& tree) {
        if (tree.empty()) return;
        writeName(names, key);
        names += ' ' + std::to_string(tree.write(*output_)) + " 0 R";
    };
    add("Dests", destinations_.names());
    for (NamedTree& tree : trees_) add(tree.key, tree.names);
    if (!names.empty()) catalogEntries += "/Names<<" + names + ">>";
}

bool DocumentJoiner::edit(const Copied& object, std::string_view text, std::string& changed) {
    const bool mayEditStructure = joinsStructure_ || (isBaseTagged_ && !source_->isBase);
    const bool mayEditForm = forms_.mayEdit(object);
    if (!mayEditStructure && !mayEditForm) return false;
    const std::uint32_t group = object.overlay ? group_ : 0;
    bool any = false;
    // Each goes on with what the one before it has made.
    const auto apply = [&](const auto& change) {
        if (any) before_ = changed;
        after_.clear();
        if (!change(any ? std::string_view(before_) : text, after_)) return;
        std::swap(changed, after_);
        any = true;
    };
    if (mayEditForm) {
        apply([&](std::string_view from, std::string& to) { return forms_.edit(object, group, from, to); });
    }
    if (mayEditStructure) {
        apply(
            [&](std::string_view from, std::string& to) { return structure_.edit(*source_, object, group, from, to); });
    }
    return any;
}

std::string DocumentJoiner::structureKey(std::string_view key, const Copied* page) {
    const bool isCopy = page && page->overlay;
    if (joinsStructure_) return structure_.key(key, isCopy ? group_ : 0);
    // The tree of a base that is the only one stays as it is.
    return source_->isBase && !isCopy ? std::string(key) : std::string();
}

}  // namespace quillon::pdf
