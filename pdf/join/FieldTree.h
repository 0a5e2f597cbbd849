#pragma once

#include "pdf/object/ObjectMap.h"
#include "pdf/read/ObjectReader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// The fields of a form (ISO 32000-2, 12.7.4), each in front of those below it. Loops and what stands in the tree twice
/// are passed over; a tree larger than its file can justify is cut off. Where the tree is damaged, a field that says
/// what it is below of stands there, even if that one does not list it.
class FieldTree {
public:
    static constexpr std::uint32_t none = UINT32_MAX;
    enum class Type : std::uint8_t { None, Button, Signature, Other };

    struct Node {
        /// Of a field that is no object of its own: one that the file does not have.
        Reference reference;
        std::uint32_t parent = none;  ///< index
        std::uint32_t kids = 0;       ///< how many fields stand directly below it
        std::string name;             ///< a PDF text string; empty below a field that has one
        std::string comparable;       ///< the name as FieldNames::comparable() has it
        Type type = Type::None;       ///< its own, or that of the field above it
        bool holdsSignature = false;  ///< its value is that of a signature, at it or below
        bool namesParent = false;     ///< what it says of the field above it is right
        bool isNamed = false;         ///< it or a field above it has a name
        bool isAnnotation = false;    ///< as well
    };

    FieldTree() = default;
    /// `form` is the value of the catalog's `AcroForm`.
    FieldTree(ObjectReader& reader, const Dictionary& form);

    [[nodiscard]] const std::vector<Node>& nodes() const noexcept { return nodes_; }
    /// The index of the field with this object number; `none` for any other object.
    [[nodiscard]] std::uint32_t find(std::uint32_t object) const { return places_.get(object) - 1; }
    /// The entries of a field, if it has any.
    [[nodiscard]] Object read(ObjectReader& reader, std::uint32_t field) const;

    /// Whether fields that belong below others may be missing.
    [[nodiscard]] bool mayMissFields() const;
    /// Adds the object if it says that it belongs below a field of the tree.
    void adopt(ObjectReader& reader, Reference object);

private:
    /// Entries of a field as they stand in it.
    struct Entries {
        bool isField = false;  ///< and none that is in the tree already
        Object type;
        Object kids;
        Object parent;
        Object name;
        Object subtype;

        [[nodiscard]] Object* at(std::string_view key) noexcept;
    };

    [[nodiscard]] static bool takeEntries(std::string_view text, Entries& entries);
    [[nodiscard]] static Entries entriesOf(const Object& dictionary);
    [[nodiscard]] Entries look(ObjectReader& reader, Reference field) const;
    void addFrom(ObjectReader& reader, Reference field, bool mayBeTop);
    void addDirect(ObjectReader& reader, const Object& field, std::uint32_t parent);
    void add(ObjectReader& reader, Reference field, const Entries& entries, std::uint32_t parent);
    void addWaiting(ObjectReader& reader);
    void takeType(ObjectReader& reader, const Entries& entries, std::uint32_t field);

    std::vector<Node> nodes_;
    ObjectMap<std::uint32_t> places_;                        // index + 1
    std::unordered_map<std::uint32_t, Object> direct_;       // by index
    std::unordered_set<std::uint32_t> lists_;                // objects that are lists of kids
    std::unordered_set<std::uint32_t> strays_;               // objects that belong to no field
    std::uint64_t kids_ = 0;                                 // named so far, as often as they are
    std::vector<std::pair<Object, std::uint32_t>> waiting_;  // with the index of the parent
    std::uint32_t unused_ = (1U << 31U) - 1;                 // numbers above are taken for direct fields
};

}  // namespace quillon::pdf
