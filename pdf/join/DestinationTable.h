#pragma once

#include "pdf/join/NameTable.h"
#include "pdf/read/DestinationResolver.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// The named destinations of a source, each told by its place: those of the name tree first, then those of PDF 1.1.
/// Of several with one name only the first counts.
class DestinationTable {
public:
    DestinationTable() = default;
    explicit DestinationTable(DestinationNames names);
    // Refers to its own names.
    DestinationTable(const DestinationTable&) = delete;
    DestinationTable& operator=(const DestinationTable&) = delete;
    DestinationTable(DestinationTable&&) = default;
    DestinationTable& operator=(DestinationTable&&) = default;
    ~DestinationTable() = default;

    [[nodiscard]] std::size_t size() const noexcept { return values_.size(); }
    [[nodiscard]] std::string_view name(std::size_t place) const {
        return place < tree_.size() ? tree_.at(static_cast<std::uint32_t>(place))
                                    : old_.at(static_cast<std::uint32_t>(place - tree_.size()));
    }
    [[nodiscard]] const Object& value(std::size_t place) const { return *values_[place]; }
    /// The place of a text of the name tree; nothing when it is not there.
    [[nodiscard]] std::optional<std::size_t> findInTree(std::string_view name) const { return tree_.find(name); }
    /// The same for a name of PDF 1.1.
    [[nodiscard]] std::optional<std::size_t> findOld(std::string_view name) const {
        const auto index = old_.find(name);
        return index ? std::optional(tree_.size() + *index) : std::nullopt;
    }

private:
    void add(const NamedValues& names, NameTable& known);

    DestinationNames names_;
    NameTable tree_;
    NameTable old_;
    std::vector<const Object*> values_;  // by place
};

}  // namespace quillon::pdf
