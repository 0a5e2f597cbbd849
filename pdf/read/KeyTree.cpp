#include "pdf/read/KeyTree.h"

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
            const Object resolved = reader_.resolve(node);
            const Dictionary* dictionary = resolved.dictionary();
            if (!dictionary) continue;
            takeLeaves(reader_.resolve((*dictionary)[leaves_]));
            const Object kids = reader_.resolve((*dictionary)["Kids"]);
            if (!kids.array()) continue;
            visits_ += kids.array()->size();
            if (!reader_.mayVisit(visits_)) break;
            waiting.insert(waiting.end(), kids.array()->rbegin(), kids.array()->rend());
        }
        return std::move(entries_);
    }

private:
    void takeLeaves(const Object& leaves) {
        if (!leaves.array()) return;
        const Array& array = *leaves.array();
        visits_ += array.size() / 2;
        full_ = full_ || !reader_.mayVisit(visits_);
        for (std::size_t i = 0; i + 1 < array.size() && !full_; i += 2) {
            auto key = keyOf(reader_.resolve(array[i]), static_cast<Key*>(nullptr));
            if (!key) continue;
            bytes_ += bytesOf(*key);
            full_ = bytes_ > limits::treeKeys;
            entries_.emplace_back(std::move(*key), array[i + 1]);
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
