#pragma once

#include "pdf/object/TextArena.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Numbers names by the ten thousand: a hash table without an allocation for each, small enough to stay near the
/// processor. The names are not copied and must stay where they are.
class NameTable {
public:
    NameTable();

    struct Added {
        std::uint32_t index;
        bool isNew;
    };
    /// The index of `name`: how many were there when it was added, now if it is new.
    Added add(std::string_view name);
    /// The same for a name that does not stay: if it is new, `texts` keeps it.
    Added add(std::string_view name, TextArena& texts);
    [[nodiscard]] std::string_view at(std::uint32_t index) const { return names_[index]; }
    /// Nothing when it is not there.
    [[nodiscard]] std::optional<std::uint32_t> find(std::string_view name) const;
    [[nodiscard]] bool contains(std::string_view name) const { return find(name).has_value(); }
    [[nodiscard]] std::size_t size() const noexcept { return names_.size(); }

    /// `name` is about to be added or asked for: has the processor fetch where it belongs.
    void fetchPlaceOf(std::string_view name) const {
        if (!slots_.empty()) __builtin_prefetch(&slots_[hashOf(name) & (slots_.size() - 1)]);
    }
    /// Makes room for `count` names at once.
    void reserve(std::size_t count);

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t place = 0;  // index + 1; 0: a free slot
    };

    [[nodiscard]] std::uint32_t hashOf(std::string_view name) const;
    /// The slot of `name`, or the free one where it belongs. There must be a free one.
    [[nodiscard]] std::size_t slotOf(std::string_view name, std::uint32_t hash) const;
    template <class Keep>
    Added addKept(std::string_view name, Keep keep);
    void grow(std::size_t slots);

    std::uint64_t seed_;  // which no file can know, so that none can bring names that all meet in one place
    std::vector<Slot> slots_;
    std::vector<std::string_view> names_;
};

}  // namespace quillon::pdf
