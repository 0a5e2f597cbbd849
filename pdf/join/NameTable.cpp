#include "pdf/join/NameTable.h"

#include "pdf/security/RandomBytes.h"

#include <xxhash.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace quillon::pdf {

namespace {

std::uint64_t randomSeed() {
    std::uint64_t seed = 0;
    const std::string bytes = randomBytes(sizeof seed);
    std::memcpy(&seed, bytes.data(), sizeof seed);
    return seed;
}

}  // namespace

NameTable::NameTable() : seed_(randomSeed()) {}

std::uint32_t NameTable::hashOf(std::string_view name) const {
    return static_cast<std::uint32_t>(XXH3_64bits_withSeed(name.data(), name.size(), seed_));
}

std::size_t NameTable::slotOf(std::string_view name, std::uint32_t hash) const {
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].name.data() && (slots_[at].hash != hash || slots_[at].name != name)) {
        at = (at + 1) & (slots_.size() - 1);
    }
    return at;
}

bool NameTable::add(std::string_view name, std::uint32_t value) {
    if (2 * (count_ + 1) > slots_.size()) grow(2 * (count_ + 1));
    if (!name.data()) name = "";
    const std::uint32_t hash = hashOf(name);
    Slot& slot = slots_[slotOf(name, hash)];
    if (slot.name.data()) return false;
    slot = {name, hash, value};
    ++count_;
    return true;
}

std::optional<std::uint32_t> NameTable::find(std::string_view name) const {
    if (slots_.empty()) return std::nullopt;
    const Slot& slot = slots_[slotOf(name, hashOf(name))];
    return slot.name.data() ? std::optional(slot.value) : std::nullopt;
}

void NameTable::reserve(std::size_t count) {
    if (2 * count > slots_.size()) grow(2 * count);
}

/// At least half of the slots stay free, so that a name is found at once.
void NameTable::grow(std::size_t slots) {
    constexpr std::size_t least = 16;
    std::vector<Slot> old(std::bit_ceil(std::max(slots, least)));
    old.swap(slots_);
    for (const Slot& slot : old) {
        if (slot.name.data()) slots_[slotOf(slot.name, slot.hash)] = slot;
    }
}

void NameTable::clear() {
    slots_ = {};
    count_ = 0;
}

}  // namespace quillon::pdf
