#include "pdf/join/JoinedNames.h"

#include "pdf/object/Object.h"

#include <algorithm>
#include <type_traits>

namespace quillon::pdf {

namespace {

using NamesAndTexts = std::vector<std::pair<std::string_view, std::string_view>>;

void writeKey(std::string& out, std::string_view key) {
    writeString(out, key);
}

void writeKey(std::string& out, std::int64_t key) {
    if (out.back() != '[') out += ' ';
    out += std::to_string(key);
}

/// Fetches what is written soon: names and texts are far apart in memory.
template <class Values>
void fetchAhead(const Values& values, std::size_t at) {
    constexpr std::size_t distance = 8;
    if constexpr (std::is_same_v<Values, NamesAndTexts>) {
        if (at + distance >= values.size()) return;
        __builtin_prefetch(values[at + distance].first.data());
        __builtin_prefetch(values[at + distance].second.data());
    }
}

/// Writes a tree of the sorted `values`, whose leaves have the key `leaves`, from the leaves up.
template <class Key, class Text>
std::uint32_t writeTree(ObjectOutput& output, std::string_view leaves,
                        const std::vector<std::pair<Key, Text>>& values) {
    constexpr std::size_t fanOut = 64;
    struct Node {
        std::uint32_t number;
        Key first;
        Key last;
    };
    std::string text;  // of a node
    const auto write = [&](const Key& first, const Key& last, bool isRoot) {
        if (!isRoot) {
            text += "/Limits[";
            writeKey(text, first);
            writeKey(text, last);
            text += ']';
        }
        return Node{output.addObject(text += ">>"), first, last};
    };
    std::vector<Node> level;
    for (std::size_t begin = 0; begin < values.size(); begin += fanOut) {
        const std::size_t end = std::min(values.size(), begin + fanOut);
        text = "<</";
        text += leaves;
        text += '[';
        for (std::size_t i = begin; i < end; ++i) {
            fetchAhead(values, i);
            writeKey(text, values[i].first);
            text += ' ';
            text += values[i].second;
        }
        text += ']';
        level.push_back(write(values[begin].first, values[end - 1].first, values.size() <= fanOut));
    }
    while (level.size() > 1) {
        std::vector<Node> above;
        for (std::size_t begin = 0; begin < level.size(); begin += fanOut) {
            const std::size_t end = std::min(level.size(), begin + fanOut);
            text = "<</Kids[";
            for (std::size_t i = begin; i < end; ++i) text += std::to_string(level[i].number) + " 0 R ";
            text += ']';
            above.push_back(write(level[begin].first, level[end - 1].last, level.size() <= fanOut));
        }
        level = std::move(above);
    }
    return level.empty() ? output.addObject("<</" + std::string(leaves) + "[]>>") : level.front().number;
}

/// The names of each source come in order, or nearly so; such runs are merged.
void sortRuns(NamesAndTexts& values) {
    const auto less = [](const auto& a, const auto& b) { return a.first < b.first; };
    std::vector<NamesAndTexts::iterator> ends;
    for (auto at = values.begin(); at != values.end(); ends.push_back(at)) {
        at = std::is_sorted_until(at, values.end(), less);
    }
    while (ends.size() > 1) {
        std::vector<NamesAndTexts::iterator> merged;
        auto begin = values.begin();
        for (std::size_t i = 0; i < ends.size(); i += 2) {
            const auto end = i + 1 < ends.size() ? ends[i + 1] : ends[i];
            std::inplace_merge(begin, ends[i], end, less);
            merged.push_back(end);
            begin = end;
        }
        ends = std::move(merged);
    }
}

}  // namespace

JoinedNames::Place JoinedNames::reserve(std::string_view name, std::size_t ordinal) {
    NameTable::Added added = used_.add(name, texts_);
    if (added.isNew) return Place{added.index};
    const std::string base = std::string(name) + '-' + std::to_string(ordinal);
    added = used_.add(base, texts_);
    if (added.isNew) return Place{added.index};
    std::size_t& last = last_.try_emplace(base, 1).first->second;
    do {
        added = used_.add(base + '-' + std::to_string(++last), texts_);
    } while (!added.isNew);
    return Place{added.index};
}

void JoinedNames::set(Place place, std::string_view value) {
    values_.emplace_back(place, texts_.keep(value));
}

std::uint32_t JoinedNames::write(ObjectOutput& output) const {
    NamesAndTexts named;
    named.reserve(values_.size());
    for (const auto& [place, value] : values_) named.emplace_back(nameAt(place), value);
    sortRuns(named);
    return writeTree(output, "Names", named);
}

std::uint32_t writeNumberTree(ObjectOutput& output, const std::vector<std::pair<std::int64_t, std::string>>& values) {
    return writeTree(output, "Nums", values);
}

}  // namespace quillon::pdf
