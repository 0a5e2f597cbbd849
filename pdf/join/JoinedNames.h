#pragma once

#include "pdf/join/NameTable.h"
#include "pdf/object/TextArena.h"
#include "pdf/write/ObjectOutput.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// A name tree that is joined from those of several sources: each name stands for one value.
class JoinedNames {
public:
    /// Tells names that were reserved.
    enum class Place : std::uint32_t {};

    /// Makes room for `count` more names.
    void expect(std::size_t count) { used_.reserve(used_.size() + count); }
    /// `name` is about to be reserved: has the processor fetch where it belongs.
    void fetchPlaceOf(std::string_view name) const { used_.fetchPlaceOf(name); }
    /// Takes `name` over, unless it is taken: then one made of it and of `ordinal`, which tells the sources apart.
    Place reserve(std::string_view name, std::size_t ordinal);
    /// The name under which the value is to be found; valid as long as this object.
    [[nodiscard]] std::string_view nameAt(Place place) const { return used_.at(static_cast<std::uint32_t>(place)); }
    [[nodiscard]] bool contains(std::string_view name) const { return used_.contains(name); }
    /// The value, as text of the output, of a name that was reserved.
    void set(Place place, std::string_view value);

    [[nodiscard]] bool empty() const noexcept { return values_.empty(); }
    /// Writes the tree (ISO 32000-2, 7.9.6) and returns the number of its root.
    [[nodiscard]] std::uint32_t write(ObjectOutput& output) const;

private:
    TextArena texts_;
    NameTable used_;
    std::unordered_map<std::string, std::size_t> last_;  // counters of names that were taken more than once
    std::vector<std::pair<Place, std::string_view>> values_;
};

/// Writes a number tree (7.9.7) with these keys, which must be in order, and texts of values. Returns the number of its
/// root.
[[nodiscard]] std::uint32_t writeNumberTree(ObjectOutput& output,
                                            const std::vector<std::pair<std::int64_t, std::string>>& values);

}  // namespace quillon::pdf
