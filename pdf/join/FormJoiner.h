#pragma once

#include "pdf/join/FieldNames.h"
#include "pdf/join/FieldRenames.h"
#include "pdf/join/FieldTree.h"
#include "pdf/join/FormResources.h"
#include "pdf/join/SourceCopies.h"
#include "pdf/join/StraySignatures.h"
#include "pdf/write/ObjectEditor.h"
#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillon::pdf {

/// Joins the forms of all sources (ISO 32000-2, 12.7).
///
/// Of each tree of fields those stay that are seen on a page that was taken, of a source that is taken whole all. Each
/// group of copies of pages has fields of its own. Fields at the top are renamed if an earlier one has their name, and
/// with them all below; actions that name them are changed. A field that was signed loses its value, since what was
/// signed is another file; how the signature looks stays. A group of buttons of which the chosen one was not taken has
/// none chosen. Forms in XFA are dropped: their fields stand in the file in the usual way as well.
class FormJoiner {
public:
    explicit FormJoiner(ObjectOutput*& output) : output_(output) {}

    /// Before the pages of a source are copied, which must be announced. `source` must stay until the last call of
    /// `edit` for it. To be called for a source without a form as well.
    void begin(const SourceCopies& source);
    /// False for an object of the source that surely stays as it is.
    [[nodiscard]] bool mayEdit(const ObjectEditor::Copied& object) const noexcept {
        return hasForm_ || object.mayHaveValueKey;
    }
    /// Changes what belongs to forms in an object of a page or of the document: a field that is an annotation as well,
    /// a signature field outside of the form, fonts of the form that an annotation names, and actions that name
    /// fields. `group` is that of the page. False when there is nothing to change.
    bool edit(const ObjectEditor::Copied& object, std::uint32_t group, std::string_view text, std::string& changed);
    /// After the pages were copied.
    void end(const SourceCopies& source);
    /// The value of the catalog's `AcroForm`; empty when no field is left.
    [[nodiscard]] std::string text() const;

private:
    /// The fields of one group of copies of pages.
    struct Group {
        std::map<std::uint32_t, std::uint32_t> numbers;  // by index of the field; 0: not written yet
        std::unordered_set<std::uint32_t> cleared;       // fields with no button chosen any more
        FieldRenames names;
    };

    void findWidgets(const SourceCopies& source);
    void keep(std::uint32_t field, std::uint32_t group);
    void takeNumbers(const SourceCopies& source);
    void clearButtons(Group& group);
    [[nodiscard]] bool isChosen(std::uint32_t button, std::string_view state);
    void takeDefaults(const SourceCopies& source, const Dictionary& form);
    [[nodiscard]] bool isWidget(std::uint32_t field) const { return widgets_[field]; }
    [[nodiscard]] bool editWidget(std::uint32_t field, std::uint32_t copy, std::uint32_t group, std::string_view text,
                                  std::string& changed);
    [[nodiscard]] bool editOther(bool isField, bool maySign, std::uint32_t group, std::string_view text,
                                 std::string& changed);
    [[nodiscard]] bool mayChange(std::uint32_t field, std::uint32_t group) const;
    [[nodiscard]] bool change(const Dictionary& field, std::uint32_t index, std::uint32_t group, Dictionary& changed);
    [[nodiscard]] std::optional<Object> replacement(std::string_view key, const Object& value, std::uint32_t index,
                                                    std::uint32_t group);
    [[nodiscard]] std::optional<Object> renamedAppearance(const Object& value);
    [[nodiscard]] Object withActions(Object field, std::uint32_t group);
    void writeFields(const SourceCopies& source, std::uint32_t group);
    void writeOrder(const SourceCopies& source);

    ObjectOutput*& output_;
    FieldNames names_;
    FormResources resources_;
    std::string fields_;  // references
    std::string order_;
    std::optional<std::string> appearance_;  // the default appearance
    std::int64_t quadding_ = 0;
    bool needsAppearances_ = false;
    // Of the source being copied.
    const SourceCopies* source_ = nullptr;
    ObjectReader* reader_ = nullptr;
    bool hasForm_ = false;
    FieldTree tree_;
    std::vector<bool> widgets_;  // fields that are annotations of pages
    std::vector<Group> groups_;
    StraySignatures signatures_;
    std::unordered_map<std::uint32_t, Object> states_;  // of buttons, by object number
    Object ownResources_;                               // of a form without fields, until an annotation asks for them
    Object ownOrder_;                                   // in which fields are calculated, of the fields of the source
    FontNames fonts_;
    std::optional<std::string> ownAppearance_;  // if it is not that of the joined form
    std::optional<std::int64_t> ownQuadding_;
};

}  // namespace quillon::pdf
