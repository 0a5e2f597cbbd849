#include "pdf/read/KeyTree.h"

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"
#include "pdf/read/Limits.h"

#include <optional>
#include <string>
#include <type_traits>
#include <unordered_set>

namespace quillon::pdf {

namespace {

std::optional<std::string> keyOf(const Object& object, std::string*) {
    return object.string() ? std::optional(*object.string()) : std::nullopt;
}

std::optional<std::int64_t> keyOf(const Object& object, std::int64_t*) {
    return object.integer();
}

std::size_t bytesOf(std::string_view key) {
    return key.size();
}

std::size_t bytesOf(std::int64_t) {
    return sizeof(std::int64_t);
}

void add(NamedValues& entries, std::string_view name, Object value) {
    entries.add(name, std::move(value));
}

void add(NumberedValues& entries, std::int64_t number, Object value) {
    entries.emplace_back(number, std::move(value));
}

struct PlainPair {
    std::string_view name;
    Reference value;
};

/// What a leaf of a name tree holds nearly always: a string without any escape and a reference, which are read without
/// looking for their ends first. Moves `at` behind them.
std::optional<PlainPair> readPlainPair(std::string_view array, std::size_t& at) {
    const std::size_t begin = skipBlank(array, at);
    if (begin >= array.size() || array[begin] != '(') return std::nullopt;
    const std::size_t close = array.find(')', begin);
    if (close == std::string_view::npos) return std::nullopt;
    const auto name = plainString(array.substr(begin, close + 1 - begin));
    std::size_t end = skipBlank(array, close + 1);
    const auto value = name ? readReference(array, end) : std::nullopt;
    if (!value) return std::nullopt;
    at = end;
    return PlainPair{*name, *value};
}

/// Nearly always a string or a reference, for which no parser is needed.
Object readLeaf(std::string_view value) {
    if (const auto text = plainString(value)) return std::string(*text);
    if (const auto reference = plainReference(value)) return *reference;
    return Parser(value).parse();
}

/// One walk through a tree with keys of type `Key`.
template <class Key, class Entries>
class TreeWalk {
public:
    TreeWalk(ObjectReader& reader, std::string_view leaves) : reader_(reader), leaves_(leaves) {}

    Entries read(const Object& root) {
        std::vector<Object> waiting{root};
        while (!waiting.empty() && !full_) {
            const Object node = std::move(waiting.back());
            waiting.pop_back();
            if (node.reference() && !seen_.insert(node.reference()->number).second) continue;
            const Object kids = reader_.resolve(visit(node));
            if (!kids.array()) continue;
            visits_ += kids.array()->size();
            if (!reader_.mayVisit(visits_)) break;
            waiting.insert(waiting.end(), kids.array()->rbegin(), kids.array()->rend());
        }
        return std::move(entries_);
    }

private:
    /// What is of interest in a node.
    struct Node {
        std::string_view leaves;
        std::string_view kids;
        bool isSound = false;
    };

    [[nodiscard]] Node look(std::string_view text) const {
        Node node;
        DictionaryScanner scanner(text);
        for (DictionaryScanner::Entry entry; scanner.next(entry);) {
            if (keyIs(entry.key, leaves_)) node.leaves = entry.value;
            if (keyIs(entry.key, "Kids")) node.kids = entry.value;
        }
        node.isSound = scanner.valid();
        return node;
    }

    /// Takes the leaves of a node and returns its kids.
    Object visit(const Object& value) {
        if (!value.reference()) {
            std::string text;
            value.write(text);
            return take(look(text));
        }
        auto object = reader_.find(*value.reference());
        if (!object) return {};
        // What stands in the file is followed by other objects, which a long one that is not closed might take in.
        const Node node = look(object->inFile ? object->text().substr(0, ObjectReader::usualObject) : object->text());
        if (node.isSound) return take(node);
        object = reader_.findWhole(*value.reference());
        if (!object) return {};
        std::string repaired;
        // Where the end of the value is known it counts as well-formed.
        return take(look(object->valueEnd != 0 ? object->value() : soundDictionary(object->text(), repaired)));
    }

    Object take(const Node& node) {
        if (node.leaves.starts_with('[')) {
            takeLeaves(node.leaves);
        } else if (!node.leaves.empty()) {
            std::string array;
            reader_.resolve(node.leaves).write(array);
            takeLeaves(array);
        }
        return node.kids.empty() ? Object() : Parser(node.kids).parse();
    }

    /// Each pair is read by itself, since the leaves of a large tree are most of its text.
    void takeLeaves(std::string_view array) {
        std::size_t at = 1;
        const auto next = [&]() -> std::optional<Object> {
            const std::size_t begin = skipBlank(array, at);
            const auto end = skipValue(array, begin);
            if (!end) return std::nullopt;
            at = *end;
            return readLeaf(array.substr(begin, at - begin));
        };
        while (!full_) {
            if constexpr (std::is_same_v<Key, std::string>) {
                if (const auto pair = readPlainPair(array, at)) {
                    full_ = !reader_.mayVisit(++visits_);
                    takeEntry(pair->name, pair->value);
                    continue;
                }
            }
            const auto first = next();
            auto value = first ? next() : std::nullopt;
            if (!value) return;
            full_ = !reader_.mayVisit(++visits_);
            const auto key = keyOf(first->reference() ? reader_.resolve(*first) : *first, static_cast<Key*>(nullptr));
            if (key) takeEntry(*key, std::move(*value));
        }
    }

    template <class Text>
    void takeEntry(const Text& key, Object value) {
        bytes_ += bytesOf(key);
        full_ = full_ || bytes_ > limits::treeKeys;
        add(entries_, key, std::move(value));
    }

    ObjectReader& reader_;
    std::string_view leaves_;
    Entries entries_;
    std::unordered_set<std::uint32_t> seen_;
    std::uint64_t visits_ = 0;
    std::size_t bytes_ = 0;
    bool full_ = false;
};

}  // namespace

NamedValues readNameTree(ObjectReader& reader, const Object& root) {
    return TreeWalk<std::string, NamedValues>(reader, "Names").read(root);
}

NumberedValues readNumberTree(ObjectReader& reader, const Object& root) {
    return TreeWalk<std::int64_t, NumberedValues>(reader, "Nums").read(root);
}

}  // namespace quillon::pdf
