#pragma once

#include "pdf/object/Object.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// What takes the place of an entry of a dictionary; nothing if it stays, null if it goes.
using EntryRule =
    std::function<std::optional<Object>(const Dictionary& dictionary, std::string_view key, const Object& value)>;

/// Asks `rule` for every entry of every dictionary in the object `text`, but not for what is inside of those that it
/// replaced. False when nothing is to be changed; otherwise the object is appended to `changed`.
[[nodiscard]] bool editEntries(std::string_view text, const EntryRule& rule, std::string& changed);

/// The entries of a dictionary, of equal keys the last. They lead into `dictionary`.
[[nodiscard]] std::vector<std::pair<std::string_view, const Object*>> lastEntries(const Dictionary& dictionary);

}  // namespace quillon::pdf
