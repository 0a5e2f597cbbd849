#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillon::pdf {

/// Values by hashes of 64 bits, which must be spread evenly: open addressing, without an allocation for each. `Value`
/// is small and may be copied.
template <class Value>
class HashTable {
public:
    struct Added {
        Value& value;  ///< until the next is added
        bool isNew;
    };
    /// Adds `value` unless there is one with this hash, which stays as it is then.
    Added tryEmplace(std::uint64_t hash, Value value) {
        if (4 * (size_ + 1) > 3 * slots_.size()) grow();
        if (hash == freeSlot) ++hash;
        Slot& slot = slots_[slotOf(hash)];
        const bool isNew = slot.hash == freeSlot;
        if (isNew) {
            slot = {hash, value};
            ++size_;
        }
        return {slot.value, isNew};
    }

    /// Frees the memory.
    void clear() {
        slots_ = {};
        size_ = 0;
    }

private:
    static constexpr std::uint64_t freeSlot = 0;  // a hash that counts as the next one

    struct Slot {
        std::uint64_t hash = freeSlot;
        Value value{};
    };

    /// That of the hash, or the free one where it belongs.
    [[nodiscard]] std::size_t slotOf(std::uint64_t hash) const noexcept {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = static_cast<std::size_t>(hash) & mask;
        while (slots_[at].hash != freeSlot && slots_[at].hash != hash) at = (at + 1) & mask;
        return at;
    }

    /// At least a quarter of the slots stays free.
    void grow() {
        constexpr std::size_t least = 64;
        std::vector<Slot> old(slots_.empty() ? least : 2 * slots_.size());
        old.swap(slots_);
        for (const Slot& slot : old) {
            if (slot.hash != freeSlot) slots_[slotOf(slot.hash)] = slot;
        }
    }

    std::vector<Slot> slots_;  // a power of two, or none
    std::size_t size_ = 0;
};

}  // namespace quillon::pdf
