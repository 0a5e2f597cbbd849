#include "pdf/write/PaintedPages.h"

#include "pdf/object/ContentBalance.h"
#include "pdf/read/Limits.h"
#include "pdf/write/SourceCopier.h"

#include <algorithm>
#include <utility>

namespace quillon::pdf {

void PaintedPages::writeEntries(const PageTree::Page& page, const Painting& painting, const PageValues& values,
                                std::string& out) {
    std::vector<PaintWriter::Needed> needed = writer_.neededBy(painting.layers);
    const std::vector<Reference> streams = streamsOf(values.contents);
    PageValues drawn = values;
    std::uint32_t form = 0;
    if (!streams.empty() && mustBeForm(streams)) {
        form = formOf(page, values, streams);
        needed.push_back({"XObject", form});
        std::ranges::sort(needed);
        drawn.resources = {};
    }
    const std::string prefix = writeResources(drawn, needed, out);
    out += "/Contents[";
    if (form != 0) {
        std::string content = "q ";
        writeName(content, prefix + std::to_string(form));
        out += std::to_string(writer_.addContent({}, content + " Do Q")) + " 0 R ";
    } else if (!streams.empty()) {
        out += std::to_string(writer_.addContent({}, "q")) + " 0 R ";
        for (const Reference& stream : streams) {
            writeReference(out, copier_.copyReference(stream));
            out += ' ';
        }
        out += std::to_string(writer_.addContent({}, "Q")) + " 0 R ";
    }
    writer_.writeLayers(painting, prefix, out);
    out += ']';
}

/// The streams of a page's content, those that exist.
std::vector<Reference> PaintedPages::streamsOf(std::string_view contents) {
    ObjectReader& reader = document_.reader();
    const Object value = Parser(contents).parse();
    const Object target = reader.resolve(value);
    std::vector<Reference> streams;
    if (target.dictionary() && value.reference()) streams.push_back(*value.reference());
    if (!target.array()) return streams;
    for (const Object& element : *target.array()) {
        if (element.reference() && reader.resolve(element).dictionary()) streams.push_back(*element.reference());
    }
    return streams;
}

bool PaintedPages::mustBeForm(const std::vector<Reference>& streams) {
    const auto look = [&] {
        const auto content = joined(streams);
        return content && !isBalanced(*content);
    };
    if (streams.size() > 1) return look();
    const auto [place, isNew] = mustBeForm_.try_emplace(streams.front().number, false);
    if (!isNew) return place->second;
    const auto known = scout_ ? scout_->take(document_, streams.front().number) : std::nullopt;
    place->second = known ? !*known : look();
    return place->second;
}

/// The content as one text; nothing when it cannot be decoded or is too long.
std::optional<std::string> PaintedPages::joined(const std::vector<Reference>& streams) {
    std::string content;
    for (const Reference& stream : streams) {
        auto part = document_.reader().decodedStream(stream, limits::decodedStream - content.size());
        if (!part || part->size() >= limits::decodedStream - content.size()) return std::nullopt;
        if (streams.size() == 1) return part;
        content += *part;
        content += '\n';
    }
    return content;
}

/// The form of this content with this size and these resources, which several pages may share.
std::uint32_t PaintedPages::formOf(const PageTree::Page& page, const PageValues& values,
                                   const std::vector<Reference>& streams) {
    std::string entries = "/Type/XObject/Subtype/Form/BBox";
    writeRectangle(entries, document_.box(page, InheritedAttribute::MediaBox).value_or(Rectangle{0, 0, 612, 792}));
    const auto [place, isNew] = forms_.try_emplace({entries + std::string(values.resources), streams}, 0);
    if (isNew) place->second = writeForm(std::move(entries), values, streams);
    return place->second;
}

std::uint32_t PaintedPages::writeForm(std::string entries, const PageValues& values,
                                      const std::vector<Reference>& streams) {
    entries += "/Resources";
    if (values.resources.empty()) {
        entries += "<<>>";
    } else {
        copier_.copyValue(values.resources, nullptr, entries);
    }
    return writer_.addContent(entries, joined(streams).value_or(std::string()));
}

/// Pages that share their resources share the new ones, if the same is painted on them. Returns the prefix of names.
std::string PaintedPages::writeResources(const PageValues& values, const std::vector<PaintWriter::Needed>& needed,
                                         std::string& out) {
    const Object object = document_.reader().resolve(values.resources);
    static const Dictionary none;
    const Dictionary& own = object.dictionary() ? *object.dictionary() : none;
    out += "/Resources";
    if (!values.inheritsResources && !values.resources.ends_with('R')) {
        return writer_.writeResources(own, needed, origin(), out);
    }
    const auto [place, isNew] = shared_.try_emplace({std::string(values.resources), needed});
    SharedResources& shared = place->second;
    if (isNew) {
        std::string text;
        shared.prefix = writer_.writeResources(own, needed, origin(), text);
        shared.number = writer_.sink().addObject(text);
    }
    out += ' ' + std::to_string(shared.number) + " 0 R";
    return shared.prefix;
}

PaintWriter::Origin PaintedPages::origin() {
    return {[this](const Object& object) { return document_.reader().resolve(object); },
            [this](const Object& object, std::string& out) {
                if (const Reference* reference = object.reference()) {
                    writeReference(out, copier_.copyReference(*reference));
                    return;
                }
                std::string text;
                object.write(text);
                copier_.copyValue(text, nullptr, out);
            }};
}

}  // namespace quillon::pdf
