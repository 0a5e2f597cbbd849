#pragma once

#include "pdf/object/TextArena.h"
#include "pdf/read/ObjectReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// Values with their names, in the order in which they were added. The names end with this, wherever it is moved.
class NamedValues {
public:
    using Entry = std::pair<std::string_view, Object>;

    void add(std::string_view name, Object value) { entries_.emplace_back(names_.keep(name), std::move(value)); }

    [[nodiscard]] auto begin() const noexcept { return entries_.begin(); }
    [[nodiscard]] auto end() const noexcept { return entries_.end(); }
    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }

private:
    TextArena names_;
    std::vector<Entry> entries_;
};

using NumberedValues = std::vector<std::pair<std::int64_t, Object>>;

/// The entries of the name tree `root` (ISO 32000-2, 7.9.6) in the order of the file; values that are references are
/// not followed. Loops, nodes named twice and what is no entry are passed over; a tree larger than its file can justify
/// is cut off.
[[nodiscard]] NamedValues readNameTree(ObjectReader& reader, const Object& root);

/// The same for a number tree (7.9.7).
[[nodiscard]] NumberedValues readNumberTree(ObjectReader& reader, const Object& root);

}  // namespace quillon::pdf
