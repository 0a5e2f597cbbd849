#include "pdf/join/PageFields.h"

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"

#include <optional>
#include <utility>
#include <vector>

namespace quillon::pdf {

namespace {

/// Those in the array that `value` is or leads to.
std::vector<Reference> references(ObjectReader& reader, const Object& value) {
    if (const Reference* list = value.reference()) {
        const auto object = reader.findWhole(*list);
        auto plain = object ? plainReferences(object->value()) : std::nullopt;
        if (plain) return *std::move(plain);
    }
    std::vector<Reference> found;
    const Object annotations = reader.resolve(value);
    for (const Object& annotation : annotations.array() ? *annotations.array() : Array()) {
        if (annotation.reference()) found.push_back(*annotation.reference());
    }
    return found;
}

}  // namespace

PageFields::PageFields(SourceDocument& document, FieldTree& tree, const std::vector<bool>& taken) {
    const std::vector<PageTree::Page>& pages = document.pages().pages();
    const bool adopts = tree.mayMissFields();
    Known known;
    for (std::size_t i = 0; i < pages.size() && i < taken.size(); ++i) {
        auto fields = taken[i] ? look(document, tree, pages[i], known, adopts) : nullptr;
        if (!fields) continue;
        pages_.resize(i + 1);
        pages_[i] = std::move(fields);
    }
}

std::shared_ptr<const PageFields::Fields> PageFields::look(SourceDocument& document, FieldTree& tree,
                                                           const PageTree::Page& page, Known& known, bool adopts) {
    // A page may stand in its tree often.
    if (const auto list = known.find(page.number); page.number != 0 && list != known.end()) return list->second;
    ObjectReader& reader = document.reader();
    const std::string text = document.pageText(page);
    const Object value = Parser(findValue(text, "Annots")).parse();
    const std::uint32_t listNumber = value.reference() ? value.reference()->number : 0;
    if (const auto list = known.find(listNumber); listNumber != 0 && list != known.end()) return list->second;
    Fields fields;
    for (const Reference annotation : references(reader, value)) {
        if (adopts) tree.adopt(reader, annotation);
        const auto field = tree.find(annotation.number);
        if (field != FieldTree::none) fields.push_back(field);
    }
    auto shared = fields.empty() ? nullptr : std::make_shared<const Fields>(std::move(fields));
    for (const std::uint32_t number : {page.number, listNumber}) {
        if (number != 0) known.emplace(number, shared);
    }
    return shared;
}

}  // namespace quillon::pdf
