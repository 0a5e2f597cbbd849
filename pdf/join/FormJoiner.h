#pragma once

#include "pdf/join/FieldNames.h"
#include "pdf/join/FieldTree.h"
#include "pdf/join/FormResources.h"
#include "pdf/join/SourceCopies.h"
#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// Joins the forms of all sources (ISO 32000-2, 12.7).
///
/// Of each tree of fields those stay that are seen on a page that was taken, of a source that is taken whole all. Each
/// group of copies of pages has fields of its own. Fields at the top are renamed if an earlier one has their name, and
/// with them all below. A field that was signed loses its value, since what was signed is another file; how the
/// signature looks stays. Forms in XFA are dropped: their fields stand in the file in the usual way as well.
class FormJoiner {
public:
    explicit FormJoiner(ObjectOutput*& output) : output_(output) {}

    /// Before the pages of a source are copied, which must be announced.
    void begin(const SourceCopies& source);
    /// Changes a field that is an annotation of a page as well, or a signature field outside of the form. `group` is
    /// that of the page. False when there is nothing to change.
    bool edit(std::uint32_t object, std::uint32_t copy, std::uint32_t group, std::string_view text,
              std::string& changed);
    /// After the pages were copied.
    void end(const SourceCopies& source);
    /// The value of the catalog's `AcroForm`; empty when no field is left.
    [[nodiscard]] std::string text() const;

private:
    /// The fields of one group of copies of pages.
    struct Group {
        std::map<std::uint32_t, std::uint32_t> numbers;  // by index of the field; 0: not written yet
        std::unordered_map<std::string, std::string> names;
    };

    void findWidgets(const SourceCopies& source);
    void keep(std::uint32_t field, std::uint32_t group);
    void takeNumbers(const SourceCopies& source);
    void takeDefaults(const SourceCopies& source, const Dictionary& form);
    [[nodiscard]] bool isWidget(std::uint32_t field) const { return widgets_[field]; }
    [[nodiscard]] bool mayChange(std::uint32_t field, std::uint32_t group) const;
    [[nodiscard]] bool change(const Dictionary& field, std::uint32_t index, std::uint32_t group, Dictionary& changed);
    [[nodiscard]] static bool dropSignature(std::string_view text, std::string& changed);
    void writeFields(const SourceCopies& source, std::uint32_t group);
    void writeOrder(const SourceCopies& source, const Dictionary& form);

    ObjectOutput*& output_;
    FieldNames names_;
    FormResources resources_;
    std::string fields_;  // references
    std::string order_;
    std::optional<std::string> appearance_;  // the default appearance
    std::int64_t quadding_ = 0;
    bool needsAppearances_ = false;
    // Of the source being copied.
    FieldTree tree_;
    std::vector<bool> widgets_;  // fields that are annotations of pages
    std::vector<Group> groups_;
    ObjectReader* reader_ = nullptr;
    FontNames fonts_;
    std::optional<std::string> ownAppearance_;  // if it is not that of the joined form
    std::optional<std::int64_t> ownQuadding_;
};

}  // namespace quillon::pdf
