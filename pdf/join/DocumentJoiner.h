#pragma once

#include "pdf/join/DestinationJoiner.h"
#include "pdf/join/SourceCopies.h"
#include "pdf/write/DocumentWriter.h"
#include "pdf/write/ObjectEditor.h"
#include "pdf/write/PageTreeWriter.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Joins what belongs to the documents of a merge and not to their pages: what their catalogs lead to (ISO 32000-2,
/// 7.7.2). What only the base has is not looked at; it travels with its catalog.
class DocumentJoiner final : public ObjectEditor {
public:
    /// Neither may change or go while the joiner is in use.
    DocumentJoiner(const std::vector<SourcePlan>& sources, const DocumentPlan& plan);

    /// The entries of the base's catalog that the joiner writes itself.
    [[nodiscard]] std::vector<std::string_view> catalogKeys() const;

    /// When the pages of a source have been announced and none of them is copied. The document, its plan and the copier
    /// must stay until `end`.
    void begin(const SourcePlan& plan, SourceDocument& document, SourceCopier& copier);
    /// When they have been copied.
    void end();
    /// When all sources have been copied: appends the joined entries of the catalog.
    void write(ObjectOutput& output, std::string& catalogEntries);

    Verdict edit(const Copied& object, std::string_view text, std::string& changed) override;

private:
    struct NamedTree {
        std::string_view key;
        JoinedNames names;
    };

    void takeNames();
    /// Whether the entry must be joined: a source other than the base has it, or the base and pages of it are taken
    /// twice.
    [[nodiscard]] bool joins(std::string_view key) const;

    const std::vector<SourcePlan>& sources_;
    const DocumentPlan& plan_;
    bool joinsNames_;
    DestinationJoiner destinations_;
    std::array<NamedTree, 2> trees_{{{"EmbeddedFiles", {}}, {"JavaScript", {}}}};
    std::string otherNames_;  // trees of the base that are not joined
    Dictionary catalog_;      // of the source being copied
    std::optional<SourceCopies> source_;
    std::size_t ordinal_ = 0;
};

}  // namespace quillon::pdf
