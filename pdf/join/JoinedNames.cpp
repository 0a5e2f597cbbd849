#include "pdf/join/JoinedNames.h"

#include "pdf/io/InHalves.h"
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

template <class Key>
void writeLimits(std::string& out, const Key& first, const Key& last) {
    out += "/Limits[";
    writeKey(out, first);
    writeKey(out, last);
    out += ']';
}

// Entries of a leaf, and kids of a node.
constexpr std::size_t fanOut = 64;

// Names from which on two threads share the work.
constexpr std::size_t worthSharing = 4096;

/// The text of the leaf that begins at `begin`, with the entry `key` for the pairs.
template <class Values>
std::string leafText(std::string_view key, const Values& values, std::size_t begin) {
    const std::size_t end = std::min(values.size(), begin + fanOut);
    constexpr std::size_t usualLeaf = 4096;
    std::string text;
    text.reserve(usualLeaf);
    text += "<</";
    text += key;
    text += '[';
    for (std::size_t i = begin; i < end; ++i) {
        fetchAhead(values, i);
        writeKey(text, values[i].first);
        text += ' ';
        text += values[i].second;
    }
    text += ']';
    if (values.size() > fanOut) writeLimits(text, values[begin].first, values[end - 1].first);
    return text += ">>";
}

template <class Key>
struct TreeNode {
    std::uint32_t number;
    Key first;
    Key last;
};

template <class Key, class Text>
std::vector<TreeNode<Key>> writeLeaves(ObjectOutput& output, std::string_view key,
                                       const std::vector<std::pair<Key, Text>>& values) {
    std::vector<std::string> texts((values.size() + fanOut - 1) / fanOut);
    inHalves(values.size(), fanOut, worthSharing, [&](std::size_t begin, std::size_t end) {
        for (std::size_t at = begin; at < end; at += fanOut) texts[at / fanOut] = leafText(key, values, at);
    });
    std::vector<TreeNode<Key>> leaves;
    for (std::size_t at = 0; at < values.size(); at += fanOut) {
        const std::size_t last = std::min(values.size(), at + fanOut) - 1;
        const std::string text = std::move(texts[at / fanOut]);  // which ends when it is written
        leaves.push_back({output.addObject(text), values[at].first, values[last].first});
    }
    return leaves;
}

/// Writes a tree of the sorted `values`, whose leaves have the key `key`, from the leaves up.
template <class Key, class Text>
std::uint32_t writeTree(ObjectOutput& output, std::string_view key, const std::vector<std::pair<Key, Text>>& values) {
    if (values.empty()) return output.addObject("<</" + std::string(key) + "[]>>");
    std::vector<TreeNode<Key>> level = writeLeaves(output, key, values);
    while (level.size() > 1) {
        std::vector<TreeNode<Key>> above;
        for (std::size_t begin = 0; begin < level.size(); begin += fanOut) {
            const std::size_t end = std::min(level.size(), begin + fanOut);
            std::string text = "<</Kids[";
            for (std::size_t i = begin; i < end; ++i) text += std::to_string(level[i].number) + " 0 R ";
            text += ']';
            if (level.size() > fanOut) writeLimits(text, level[begin].first, level[end - 1].last);
            above.push_back({output.addObject(text += ">>"), level[begin].first, level[end - 1].last});
        }
        level = std::move(above);
    }
    return level.front().number;
}

bool isBefore(const NamesAndTexts::value_type& a, const NamesAndTexts::value_type& b) {
    return a.first < b.first;
}

/// The names of each source come in order, or nearly so; such runs are merged.
void sortRuns(NamesAndTexts::iterator first, NamesAndTexts::iterator last) {
    std::vector<NamesAndTexts::iterator> ends;
    for (auto at = first; at != last; ends.push_back(at)) at = std::is_sorted_until(at, last, isBefore);
    while (ends.size() > 1) {
        std::vector<NamesAndTexts::iterator> merged;
        auto begin = first;
        for (std::size_t i = 0; i < ends.size(); i += 2) {
            const auto end = i + 1 < ends.size() ? ends[i + 1] : ends[i];
            std::inplace_merge(begin, ends[i], end, isBefore);
            merged.push_back(end);
            begin = end;
        }
        ends = std::move(merged);
    }
}

void sortNames(NamesAndTexts& values) {
    inHalves(values.size(), 1, worthSharing, [&](std::size_t begin, std::size_t end) {
        sortRuns(values.begin() + static_cast<std::ptrdiff_t>(begin),
                 values.begin() + static_cast<std::ptrdiff_t>(end));
    });
    sortRuns(values.begin(), values.end());
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
    sortNames(named);
    return writeTree(output, "Names", named);
}

std::uint32_t writeNumberTree(ObjectOutput& output, const std::vector<std::pair<std::int64_t, std::string>>& values) {
    return writeTree(output, "Nums", values);
}

}  // namespace quillon::pdf
