#include "pdf/read/OutlineReader.h"

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"
#include "pdf/read/Limits.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quillon::pdf {

namespace {

class OutlineWalk {
public:
    explicit OutlineWalk(SourceDocument& document) : reader_(document.reader()), destinations_(document) {}

    std::vector<OutlineItem> read(const Reference& root, const Object& first) {
        seen_.insert(root.number);
        expect(first, 0);
        while (!waiting_.empty() && items_.size() < limits::outlineNodes) {
            const auto [reference, depth] = waiting_.back();
            waiting_.pop_back();
            if (seen_.insert(reference.number).second) {
                visit(reference, depth);
            } else {
                reader_.warnings().add("the outline leads back to itself; it is cut there", reference.number);
            }
        }
        return std::move(items_);
    }

private:
    void expect(const Object& node, std::uint32_t depth) {
        if (node.reference()) waiting_.emplace_back(*node.reference(), depth);
    }

    void visit(Reference reference, std::uint32_t depth) {
        const auto object = reader_.findWhole(reference);
        if (!object) return;
        std::string repaired;
        const std::string_view text = soundDictionary(object->value(), repaired);
        if (text.empty()) return;
        OutlineItem item;
        item.depth = depth;
        Object next;
        Object first;
        Object destination;
        Object action;
        DictionaryScanner scanner(text);
        for (DictionaryScanner::Entry entry; scanner.next(entry);) {
            const auto value = [&] { return Parser(entry.value).parse(); };
            if (keyIs(entry.key, "Title")) {
                takeTitle(value(), item);
            } else if (keyIs(entry.key, "Next")) {
                next = value();
            } else if (keyIs(entry.key, "First")) {
                first = value();
            } else if (keyIs(entry.key, "Dest")) {
                destination = value();
            } else if (keyIs(entry.key, "A")) {
                action = value();
            } else if (keyIs(entry.key, "Count")) {
                item.open = reader_.resolve(value()).number().value_or(0) > 0;
            } else if (keyIs(entry.key, "C")) {
                takeColour(reader_.resolve(value()), item);
            } else if (keyIs(entry.key, "F")) {
                takeStyle(reader_.resolve(value()), item);
            }
        }
        takeTarget(destination, action, item);
        items_.push_back(std::move(item));
        expect(next, depth);
        expect(first, std::min(depth + 1, limits::outlineDepth));
    }

    void takeTitle(const Object& value, OutlineItem& item) {
        if (textBytes_ > limits::outlineText) return;
        const Object title = reader_.resolve(value);
        if (!title.string()) return;
        textBytes_ += title.string()->size();
        if (textBytes_ <= limits::outlineText) item.title = *title.string();
    }

    void takeColour(const Object& colour, OutlineItem& item) {
        const Array* array = colour.array();
        if (!array || array->size() != 3) return;
        std::string text = "/C[";
        for (const Object& part : *array) {
            const auto value = reader_.resolve(part).number();
            if (!value) return;
            if (text.back() != '[') text += ' ';
            writeReal(text, *value);
        }
        item.look += text + ']';
    }

    static void takeStyle(const Object& style, OutlineItem& item) {
        const auto flags = style.integer();
        if (flags && *flags != 0) item.look += "/F " + std::to_string(*flags);
    }

    void takeTarget(const Object& destination, const Object& action, OutlineItem& item) {
        if (!destination.isNull()) item.destination = destinations_.resolve(destination);
        if (item.destination) return;
        const Target target = action.reference() ? known(*action.reference()) : targetOf(action);
        if (target.goesTo) {
            item.destination = target.destination;
        } else if (target.isAction && textBytes_ <= limits::outlineText) {
            action.write(item.action);
            textBytes_ += item.action.size();
            if (textBytes_ > limits::outlineText) item.action.clear();
        }
    }

    struct Target {
        bool isAction = false;
        bool goesTo = false;  // a destination of the document, if that is found
        std::optional<Destination> destination;
    };

    Target targetOf(const Object& action) {
        Target target;
        if (!action.dictionary()) return target;
        target.isAction = true;
        target.goesTo = reader_.resolve((*action.dictionary())["S"]).isName("GoTo");
        if (target.goesTo) target.destination = destinations_.resolve((*action.dictionary())["D"]);
        return target;
    }

    /// An action that much refers to is read once.
    const Target& known(Reference action) {
        const auto [place, isNew] = actions_.try_emplace(action.number);
        if (isNew) place->second = targetOf(reader_.resolve(Object(action)));
        return place->second;
    }

    ObjectReader& reader_;
    DestinationResolver destinations_;
    std::unordered_map<std::uint32_t, Target> actions_;  // by object number
    std::vector<OutlineItem> items_;
    std::vector<std::pair<Reference, std::uint32_t>> waiting_;
    std::unordered_set<std::uint32_t> seen_;
    std::size_t textBytes_ = 0;
};

}  // namespace

std::optional<std::vector<OutlineItem>> readOutline(SourceDocument& document) {
    if (!document.catalog()) return std::nullopt;
    ObjectReader& reader = document.reader();
    const Object catalog = reader.parse(*document.catalog());
    if (!catalog.dictionary()) return std::nullopt;
    const Object& root = (*catalog.dictionary())["Outlines"];
    const Object outlines = reader.resolve(root);
    if (!outlines.dictionary()) return std::nullopt;
    const Object& first = (*outlines.dictionary())["First"];
    std::vector<OutlineItem> items =
        OutlineWalk(document).read(root.reference() ? *root.reference() : Reference{}, first);
    if (items.empty()) return std::nullopt;
    return items;
}

}  // namespace quillon::pdf
