#pragma once

#include "pdf/join/JoinedNames.h"
#include "pdf/join/SourceCopies.h"
#include "pdf/join/StructureMaps.h"
#include "pdf/read/KeyTree.h"
#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// Joins the structure trees of all sources (ISO 32000-2, 14.7): the elements at the top of each stand side by side.
///
/// The elements of a source that is taken whole travel as they are, unless any must be renamed. Of others, and for
/// further copies of pages, the elements are written anew: those that the parent tree names for the content that was
/// taken, those above them, and the empty ones beside them.
/// Every index into the parent tree is given anew.
class StructureJoiner {
public:
    explicit StructureJoiner(ObjectOutput*& output) : output_(output) {}

    /// Before the pages of a source are copied, which must be announced.
    void begin(const SourceCopies& source);
    /// The index that takes the place of `key` in an object of a group; empty: none.
    [[nodiscard]] std::string key(std::string_view key, std::uint32_t group);
    /// Changes what else an object says of the tree. False when there is nothing to change.
    bool edit(const SourceCopies& source, const ObjectEditor::Copied& object, std::uint32_t group,
              std::string_view text, std::string& changed);
    /// After the pages were copied. `language` is that of the source, if it is another than that of the output.
    void end(const SourceCopies& source, const std::string& language);
    /// Writes the root and returns its entry and that of the marks in the catalog.
    [[nodiscard]] std::string write();

private:
    /// An element that is written anew.
    struct Element {
        Reference reference;
        std::uint32_t parent;  // index; `top` at the top
        std::uint32_t number;
        bool isListed;  // among the kids of an element, or at the top
    };
    static constexpr std::uint32_t top = UINT32_MAX;
    struct Group {
        std::unordered_map<std::int64_t, std::int64_t> keys;  // old, new
        std::vector<std::pair<std::int64_t, std::int64_t>> order;
        std::vector<Element> elements;
        std::unordered_map<std::uint32_t, std::uint32_t> places;  // by object number
        std::unordered_map<std::string, JoinedNames::Place> ids;
    };

    [[nodiscard]] Object edited(const Object& object, std::uint32_t group, bool dropsElements, bool& changed);
    [[nodiscard]] bool travels(const SourceCopies& source, const Dictionary& root);
    void moveWhole(const SourceCopies& source, const Dictionary& root);
    void writeAnew(const SourceCopies& source, const Dictionary& root, std::uint32_t group);
    void keep(const SourceCopies& source, const Object& element, Group& group);
    void keepKids(const SourceCopies& source, const Object& kids, Group& group, bool all);
    [[nodiscard]] static bool isElement(const SourceCopies& source, const Object& value);
    [[nodiscard]] bool isEmpty(const SourceCopies& source, const Object& value, int depth);
    [[nodiscard]] bool areEmpty(const SourceCopies& source, const Object& kids, int depth);
    [[nodiscard]] bool mayVisit(const SourceCopies& source) const;
    void writeElement(const SourceCopies& source, const Element& element, std::uint32_t group,
                      const std::string& language);
    [[nodiscard]] std::string kids(const SourceCopies& source, const Object& value, const Object& page,
                                   std::uint32_t group, std::uint32_t parent);
    [[nodiscard]] std::string kid(const SourceCopies& source, const Object& value, const Object& page,
                                  std::uint32_t group, std::uint32_t parent);
    [[nodiscard]] std::string attributes(const SourceCopies& source, const Object& value, std::uint32_t group);
    [[nodiscard]] Object withIds(const SourceCopies& source, const Object& value, const Group& group, int depth,
                                 bool& any);
    [[nodiscard]] std::string parents(const SourceCopies& source, const Object& value, std::uint32_t group);

    ObjectOutput*& output_;
    std::uint32_t root_ = 0;
    std::int64_t nextKey_ = 0;
    std::string kids_;  // references
    std::vector<std::pair<std::int64_t, std::string>> parents_;
    JoinedNames ids_;
    StructureMaps maps_;
    bool marked_ = false;
    bool suspect_ = false;
    // Of the source being copied.
    bool isTagged_ = false;
    bool travels_ = false;  // with its elements as they are
    std::uint32_t ownRoot_ = 0;
    std::string language_;
    std::vector<Group> groups_;
    std::unordered_map<std::uint64_t, bool> empty_;  // verdicts on elements, by object number and depth
    std::uint64_t visits_ = 0;                       // kids that were looked at for one group
    std::unordered_map<std::int64_t, Object> parentTree_;
    std::unordered_set<std::uint32_t> unlabelled_;  // elements at the top that are to be given a language
};

}  // namespace quillon::pdf
