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

/// The same for every table: to ask the system for each of a thousand takes long.
std::uint64_t programSeed() {
    static const std::uint64_t seed = randomSeed();
    return seed;
}

}  // namespace

NameTable::NameTable() : seed_(programSeed()) {}

std::uint32_t NameTable::hashOf(std::string_view name) const {
    return static_cast<std::uint32_t>(XXH3_64bits_withSeed(name.data(), name.size(), seed_));
}

std::size_t NameTable::slotOf(std::string_view name, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    const auto holds = [&](const Slot& slot) { return slot.hash == hash && names_[slot.place - 1] == name; };
    std::size_t at = hash & mask;
    while (slots_[at].place != 0 && !holds(slots_[at])) at = (at + 1) & mask;
    return at;
}

template <class Keep>
NameTable::Added NameTable::addKept(std::string_view name, Keep keep) {
    reserve(names_.size() + 1);
    const std::uint32_t hash = hashOf(name);
    Slot& slot = slots_[slotOf(name, hash)];
    if (slot.place != 0) return {slot.place - 1, false};
    names_.push_back(keep(name));
    slot = {hash, static_cast<std::uint32_t>(names_.size())};
    return {slot.place - 1, true};
}

NameTable::Added NameTable::add(std::string_view name) {
    return addKept(name, [](std::string_view text) { return text; });
}

NameTable::Added NameTable::add(std::string_view name, TextArena& texts) {
    return addKept(name, [&texts](std::string_view text) { return texts.keep(text); });
}

std::optional<std::uint32_t> NameTable::find(std::string_view name) const {
    if (slots_.empty()) return std::nullopt;
    const Slot& slot = slots_[slotOf(name, hashOf(name))];
    return slot.place != 0 ? std::optional(slot.place - 1) : std::nullopt;
}

void NameTable::reserve(std::size_t count) {
    if (2 * count > slots_.size()) grow(2 * count);
}

/// At least half of the slots stay free, so that a name is found at once.
void NameTable::grow(std::size_t slots) {
    constexpr std::size_t least = 16;
    std::vector<Slot> old(std::bit_ceil(std::max(slots, least)));
    old.swap(slots_);
    names_.reserve(slots_.size() / 2);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (slot.place == 0) continue;
        std::size_t at = slot.hash & mask;
        while (slots_[at].place != 0) at = (at + 1) & mask;
        slots_[at] = slot;
    }
}

}  // namespace quillon::pdf
