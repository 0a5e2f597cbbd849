#include "pdf/read/KeyTree.h"

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"
#include "pdf/read/Limits.h"

#include <optional>
#include <unordered_set>

namespace quillon::pdf {

namespace {

std::optional<std::string> keyOf(const Object& object, std::string*) {
    return object.string() ? std::optional(*object.string()) : std::nullopt;
}

std::optional<std::int64_t> keyOf(const Object& object, std::int64_t*) {
    return object.integer();
}

std::size_t bytesOf(const std::string& key) {
    return key.size();
}

std::size_t bytesOf(std::int64_t) {
    return sizeof(std::int64_t);
}

/// What a leaf holds nearly always, a plain string and a reference, is read without the parser.
Object readLeaf(std::string_view value) {
    if (const auto text = plainString(value)) return std::string(*text);
    if (const auto reference = plainReference(value)) return *reference;
    return Parser(value).parse();
}

/// One walk through a tree with keys of type `Key`.
template <class Key>
class TreeWalk {
public:
    TreeWalk(ObjectReader& reader, std::string_view leaves) : reader_(reader), leaves_(leaves) {}

    std::vector<std::pair<Key, Object>> read(const Object& root) {
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
    /// Takes the leaves of a node and returns its kids.
    Object visit(const Object& node) {
        std::string text;
        std::optional<ObjectText> object;
        if (node.reference()) {
            object = reader_.findWhole(*node.reference());
        } else {
            node.write(text);
        }
        // Where the end of the value is known it is well-formed.
        std::string repaired;
        const std::string_view value = !node.reference()       ? std::string_view(text)
                                       : !object               ? std::string_view()
                                       : object->valueEnd != 0 ? object->value()
                                                               : soundDictionary(object->text(), repaired);
        std::string_view leaves;
        std::string_view kids;
        DictionaryScanner scanner(value);
        for (DictionaryScanner::Entry entry; scanner.next(entry);) {
            if (keyIs(entry.key, leaves_)) leaves = entry.value;
            if (keyIs(entry.key, "Kids")) kids = entry.value;
        }
        if (leaves.starts_with('[')) {
            takeLeaves(leaves);
        } else if (!leaves.empty()) {
            std::string array;
            reader_.resolve(leaves).write(array);
            takeLeaves(array);
        }
        return Parser(kids).parse();
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
            const auto first = next();
            auto value = first ? next() : std::nullopt;
            if (!value) return;
            full_ = !reader_.mayVisit(++visits_);
            auto key = keyOf(first->reference() ? reader_.resolve(*first) : *first, static_cast<Key*>(nullptr));
            if (!key) continue;
            bytes_ += bytesOf(*key);
            full_ = full_ || bytes_ > limits::treeKeys;
            entries_.emplace_back(std::move(*key), std::move(*value));
        }
    }

    ObjectReader& reader_;
    std::string_view leaves_;
    std::vector<std::pair<Key, Object>> entries_;
    std::unordered_set<std::uint32_t> seen_;
    std::uint64_t visits_ = 0;
    std::size_t bytes_ = 0;
    bool full_ = false;
};

}  // namespace

NamedValues readNameTree(ObjectReader& reader, const Object& root) {
    return TreeWalk<std::string>(reader, "Names").read(root);
}

NumberedValues readNumberTree(ObjectReader& reader, const Object& root) {
    return TreeWalk<std::int64_t>(reader, "Nums").read(root);
}

}  // namespace quillon::pdf
