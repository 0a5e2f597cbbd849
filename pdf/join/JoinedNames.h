#pragma once

#include "pdf/join/NameTable.h"
#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// A name tree that is joined from those of several sources: each name stands for one value.
class JoinedNames {
public:
    /// Takes `name` over, unless it is taken: then one made of it and of `ordinal`, which tells the sources apart.
    /// Returns the name under which the value is to be found; valid as long as this object.
    std::string_view reserve(std::string_view name, std::size_t ordinal);
    [[nodiscard]] bool contains(std::string_view name) const { return used_.contains(name); }
    /// The value, as text of the output, of a name that was reserved.
    void set(std::string_view name, std::string_view value);

    [[nodiscard]] bool empty() const noexcept { return values_.empty(); }
    /// Writes the tree (ISO 32000-2, 7.9.6) and returns the number of its root.
    [[nodiscard]] std::uint32_t write(ObjectOutput& output);

private:
    std::deque<std::string> names_;
    NameTable used_;
    std::unordered_map<std::string, std::size_t> last_;  // counters of names that were taken more than once
    struct Value {
        std::string_view name;
        std::size_t begin;  // in `texts_`
        std::size_t length;
    };

    std::vector<Value> values_;
    std::string texts_;
};

/// Writes a number tree (7.9.7) with these keys, which must be in order, and texts of values. Returns the number of its
/// root.
[[nodiscard]] std::uint32_t writeNumberTree(ObjectOutput& output,
                                            const std::vector<std::pair<std::int64_t, std::string>>& values);

}  // namespace quillon::pdf
