#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Finds names by the ten thousand: a hash table without an allocation for each. The names are not copied and must stay
/// where they are.
class NameTable {
public:
    NameTable();

    /// Enters `name` with a value. False, and nothing changes, when it is there already.
    bool add(std::string_view name, std::uint32_t value);
    /// The value of `name`; nothing when it is not there.
    [[nodiscard]] std::optional<std::uint32_t> find(std::string_view name) const;
    [[nodiscard]] bool contains(std::string_view name) const { return find(name).has_value(); }

    /// Makes room for `count` names at once.
    void reserve(std::size_t count);
    void clear();

private:
    struct Slot {
        std::string_view name;  // without data: a free slot
        std::uint32_t hash = 0;
        std::uint32_t value = 0;
    };

    [[nodiscard]] std::uint32_t hashOf(std::string_view name) const;
    /// The slot of `name`, or the free one where it belongs. There must be a free one.
    [[nodiscard]] std::size_t slotOf(std::string_view name, std::uint32_t hash) const;
    void grow(std::size_t slots);

    std::uint64_t seed_;  // which no file can know, so that none can bring names that all meet in one place
    std::vector<Slot> slots_;
    std::size_t count_ = 0;
};

}  // namespace quillon::pdf
