#pragma once

#include "pdf/read/ObjectReader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// The fields of a form (ISO 32000-2, 12.7.4), each in front of those below it. Loops and what stands in the tree twice
/// are passed over; a tree larger than its file can justify is cut off.
class FieldTree {
public:
    static constexpr std::uint32_t none = UINT32_MAX;

    struct Node {
        Reference reference;
        std::uint32_t parent = none;  ///< index
        std::string name;             ///< a PDF text string, only of a field at the top that has one
        bool isSignature = false;     ///< or below a signature field
        bool hasKids = false;
    };

    FieldTree() = default;
    /// `form` is the value of the catalog's `AcroForm`.
    FieldTree(ObjectReader& reader, const Dictionary& form);

    [[nodiscard]] const std::vector<Node>& nodes() const noexcept { return nodes_; }
    /// The index of the field with this object number; `none` for any other object.
    [[nodiscard]] std::uint32_t find(std::uint32_t object) const;

private:
    /// Entries of a field as they stand in it.
    struct Entries {
        bool isField = false;  ///< and none that is in the tree already
        Object type;
        Object kids;
        Object parent;
        Object name;
    };

    [[nodiscard]] static bool takeEntries(std::string_view text, Entries& entries);
    [[nodiscard]] Entries look(ObjectReader& reader, Reference field) const;
    [[nodiscard]] Entries uppermost(ObjectReader& reader, Reference& field) const;
    void add(ObjectReader& reader, Reference field, const Entries& entries, std::uint32_t parent);

    std::vector<Node> nodes_;
    std::unordered_map<std::uint32_t, std::uint32_t> places_;  // by object number
    std::uint64_t kids_ = 0;                                   // named so far, as often as they are
    std::vector<std::pair<Object, std::uint32_t>> waiting_;    // with the index of the parent
};

}  // namespace quillon::pdf
