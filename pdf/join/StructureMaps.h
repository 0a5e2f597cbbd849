#pragma once

#include "pdf/join/SourceCopies.h"

#include <map>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Joins what the roots of structure trees say of the types and classes of their elements, and their namespaces (ISO
/// 32000-2, table 354). A type or class that means something else already gets a new name.
class StructureMaps {
public:
    using Names = std::map<std::string, std::string, std::less<>>;

    /// Adds those of a source, whose elements are to be asked for next.
    void add(const SourceCopies& source, const Dictionary& root);
    /// Whether types or classes of the source were renamed.
    [[nodiscard]] bool hasRenamed() const noexcept { return !newRoles_.empty() || !newClasses_.empty(); }
    /// The value of an element's `S` or `C` with the new names.
    [[nodiscard]] Object role(const Object& value) const { return renamed(value, newRoles_); }
    [[nodiscard]] Object classes(const Object& value) const { return renamed(value, newClasses_); }
    /// The entries of the joined root.
    [[nodiscard]] std::string text() const;

private:
    struct Meaning {
        std::string copied;
        std::string content;  // to compare
    };
    using Map = std::map<std::string, Meaning, std::less<>>;

    static void join(const SourceCopies& source, const Object& value, Map& joined, Names& renamed);
    [[nodiscard]] static Object renamed(const Object& value, const Names& names);

    Map roles_;
    Map classes_;
    std::string namespaces_;
    Names newRoles_;
    Names newClasses_;
};

}  // namespace quillon::pdf
