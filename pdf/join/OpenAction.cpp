#include "pdf/join/OpenAction.h"

#include "pdf/read/DestinationResolver.h"

#include <optional>
#include <utility>

namespace quillon::pdf {

namespace {

/// The page of the source that a destination leads to, if it is in the output.
std::optional<Reference> livePage(const SourceCopies& source, const Object& destination) {
    const auto found = DestinationResolver(source.document).resolve(destination);
    if (!found) return std::nullopt;
    const PageTree::Page& page = source.document.pages().pages()[found->page];
    if (page.number == 0 || !source.copier.isTaken(page.number)) return std::nullopt;
    return Reference{page.number, page.generation};
}

/// A destination that gives its page by an index, with the page itself instead: that of the output may have another.
Object withPage(ObjectReader& reader, const Object& destination, Reference page) {
    const Object resolved = reader.resolve(destination);
    if (!resolved.array() || resolved.array()->empty() || !resolved.array()->front().integer()) return destination;
    Array result = *resolved.array();
    result.front() = page;
    return result;
}

}  // namespace

std::string openAction(const SourceCopies& source) {
    ObjectReader& reader = source.reader();
    Object value = source.catalog["OpenAction"];
    const Object resolved = reader.resolve(value);
    if (resolved.isNull()) return {};
    const Dictionary* action = resolved.dictionary();
    if (!action) {
        const auto page = livePage(source, resolved);
        if (!page) return {};
        value = withPage(reader, value, *page);
    } else if (reader.resolve((*action)["S"]).isName("GoTo")) {
        const auto page = livePage(source, (*action)["D"]);
        if (!page) return {};
        Dictionary result;
        for (const auto& [key, entry] : action->entries()) {
            result.append(key, key == "D" ? withPage(reader, entry, *page) : entry);
        }
        value = std::move(result);
    }
    std::string text;
    value.write(text);
    std::string entry = "/OpenAction ";
    source.copier.copyEditedValue(text, nullptr, entry);
    return entry;
}

}  // namespace quillon::pdf
