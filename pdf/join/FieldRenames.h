#pragma once

#include "pdf/read/ObjectReader.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon::pdf {

/// How the fields at the top of a form are called in the joined one, and so all below them. Names are PDF text strings.
class FieldRenames {
public:
    /// Adds a name as FieldNames::comparable() has it. `ending`: what stands behind it from now on; empty if it stays.
    void add(const std::string& comparableName, std::string ending);
    /// Whether the name, in the same form, was added.
    [[nodiscard]] bool knows(const std::string& comparableName) const { return endings_.contains(comparableName); }
    /// Whether any name is another now.
    [[nodiscard]] bool isAny() const noexcept { return any_; }

    /// The new name of a field; nothing if it stays. `name` is its own, or its name in full (ISO 32000-2, 12.7.4.2).
    [[nodiscard]] std::optional<std::string> renamed(std::string_view name) const;

    /// Whether an action that names fields may be in the object `text`.
    [[nodiscard]] static bool mayBeNamedIn(std::string_view text);
    /// What takes the place of `value`, the entry `key` of `action`; nothing if it stays. Those entries that name
    /// fields, of the actions that reset, submit and hide them (ISO 32000-2, 12.6.4.11, 12.7.6.2, 12.7.6.3).
    [[nodiscard]] std::optional<Object> inAction(ObjectReader& reader, const Dictionary& action, std::string_view key,
                                                 const Object& value);

private:
    [[nodiscard]] const std::string* endingOf(std::string_view name) const;

    std::unordered_map<std::string, std::string> endings_;  // by comparable name
    bool any_ = false;
    std::uint64_t visits_ = 0;  // places of lists that were read
};

}  // namespace quillon::pdf
