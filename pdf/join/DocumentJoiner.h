#pragma once

#include "pdf/join/ArticleJoiner.h"
#include "pdf/join/CatalogList.h"
#include "pdf/join/DestinationJoiner.h"
#include "pdf/join/FormJoiner.h"
#include "pdf/join/LayerJoiner.h"
#include "pdf/join/PageLabelJoiner.h"
#include "pdf/join/SourceCopies.h"
#include "pdf/join/StructureJoiner.h"
#include "pdf/write/DocumentWriter.h"
#include "pdf/write/ObjectEditor.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Joins what belongs to the documents of a merge and not to their pages: what their catalogs lead to (ISO 32000-2,
/// 7.7.2). What only the base has is not looked at, if nothing of it has to change; it travels with its catalog.
class DocumentJoiner final : public ObjectEditor {
public:
    /// Neither may change or go while the joiner is in use.
    DocumentJoiner(const SourcePlans& sources, const DocumentPlan& plan);

    /// Where to write; before anything else.
    void setOutput(ObjectOutput& output) noexcept { output_ = &output; }

    /// The entries of the base's catalog that the joiner writes itself, or that end with the merge.
    [[nodiscard]] std::vector<std::string_view> catalogKeys() const;

    /// When the pages of a source have been announced and none of them is copied. All that is given must
    /// stay until `end`.
    void begin(const SourcePlan& plan, SourceSurvey& survey, PageCopies& pages, SourceDocument& document,
               SourceCopier& copier);
    /// What the survey of a source must have. May be asked on any thread.
    [[nodiscard]] SourceSurvey::Wishes wishesFor(const SourcePlan& plan) const {
        return {.destinations = joinsNames_ || plan.source() != plan_.base, .fields = true};
    }
    /// Before each page is copied.
    void enter(const PageCopies::Copy& page) noexcept { group_ = page.group; }
    /// The entry of the catalog that says where the document opens, if it is the base; empty when there is none.
    /// Between `begin` and `end`.
    [[nodiscard]] std::string openAction() const;
    /// When all have been copied.
    void end();
    /// When all sources have been copied: appends the joined entries of the catalog.
    void write(const PageTreeWriter& pages, std::string& catalogEntries);

    bool edit(const Copied& object, std::string_view text, std::string& changed) override;
    [[nodiscard]] bool editsLinks() const override { return destinations_.isActive(); }
    [[nodiscard]] bool mayReplace(std::string_view text) const override { return destinations_.mayReplace(text); }
    [[nodiscard]] std::optional<std::string> destination(std::string_view text, const Overlay* overlay) override {
        return destinations_.replacement(text, overlay);
    }
    [[nodiscard]] Object withLinks(const Object& value, const Overlay* overlay) override {
        return destinations_.withLinks(value, overlay);
    }
    std::string structureKey(std::string_view key, const Copied* page) override;

private:
    struct NamedTree {
        std::string_view key;
        JoinedNames names;
    };

    void takeNames();
    void takeLists();
    void takeLanguage();
    void writeNames(std::string& catalogEntries);
    /// Whether the entry must be joined: a source other than the base has it, or the base and pages of it are taken
    /// twice.
    [[nodiscard]] bool joins(std::string_view key) const;
    [[nodiscard]] bool anyHas(std::string_view key) const;

    const SourcePlans& sources_;
    const DocumentPlan& plan_;
    const bool joinsNames_;
    const bool joinsForms_;
    const bool joinsLayers_;
    const bool joinsLabels_;
    const bool joinsStructure_;
    const bool isBaseTagged_;  // and nothing else
    const bool joinsArticles_;
    const bool joinsIntents_;
    const bool joinsFiles_;
    ObjectOutput* output_ = nullptr;
    DestinationJoiner destinations_;
    FormJoiner forms_;
    LayerJoiner layers_;
    PageLabelJoiner labels_;
    StructureJoiner structure_;
    ArticleJoiner articles_;
    CatalogList intents_;
    CatalogList files_;
    std::array<NamedTree, 2> trees_{{{"EmbeddedFiles", {}}, {"JavaScript", {}}}};
    std::string otherNames_;               // trees of the base that are not joined
    std::optional<std::string> language_;  // of the first source that has one
    bool isLanguageOfBase_ = false;
    // Of the source being copied.
    Dictionary catalog_;
    std::optional<SourceCopies> source_;
    std::string otherLanguage_;
    std::string before_;  // of the object that is being changed; kept for their room
    std::string after_;
    std::uint32_t group_ = 0;
    std::size_t ordinal_ = 0;
};

}  // namespace quillon::pdf
