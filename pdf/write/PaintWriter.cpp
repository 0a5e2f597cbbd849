#include "pdf/write/PaintWriter.h"

#include "pdf/object/Parser.h"

#include <algorithm>
#include <utility>

namespace quillon::pdf {

namespace {

// Shorter content gains nothing: the entry that names the filter takes as much as is saved.
constexpr std::size_t worthDeflating = 200;

std::string nameOf(std::string_view prefix, std::uint32_t number) {
    std::string name(prefix);
    name += std::to_string(number);
    return name;
}

bool anyBeginsWith(const Dictionary& dictionary, std::string_view prefix) {
    return std::ranges::any_of(dictionary.entries(),
                               [prefix](const auto& entry) { return entry.first.starts_with(prefix); });
}

/// The sub-dictionaries of a resource dictionary to which something is added.
struct Categories {
    std::vector<std::string_view> names;
    std::vector<Dictionary> own;

    [[nodiscard]] std::size_t find(std::string_view name) const {
        return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
    }
};

Categories categoriesOf(const Dictionary& own, std::span<const PaintWriter::Needed> needed,
                        const PaintWriter::Origin& origin) {
    Categories categories;
    for (const auto& one : needed) {
        if (categories.find(one.category) != categories.names.size()) continue;
        categories.names.push_back(one.category);
        const Object value = origin.resolve(own[one.category]);
        categories.own.push_back(value.dictionary() ? *value.dictionary() : Dictionary());
    }
    return categories;
}

}  // namespace

PaintWriter::Origin PaintWriter::Origin::output() {
    return {[](const Object& object) { return object; },
            [](const Object& object, std::string& out) { object.write(out); }};
}

std::uint32_t PaintWriter::numberOf(const std::shared_ptr<const PaintResource>& resource) {
    if (const auto known = numbers_.find(resource.get()); known != numbers_.end()) return known->second;
    const std::uint32_t number = resource->write(*this);
    numbers_.emplace(resource.get(), number);
    return number;
}

std::vector<PaintWriter::Needed> PaintWriter::neededBy(std::span<const PaintContent> contents) {
    std::vector<Needed> needed;
    for (const PaintContent& content : contents) {
        for (const PaintPiece& piece : content) {
            if (piece.resource) needed.push_back({piece.resource->category(), numberOf(piece.resource)});
        }
    }
    std::ranges::sort(needed);
    needed.erase(std::unique(needed.begin(), needed.end()), needed.end());
    return needed;
}

std::string PaintWriter::writeResources(const Dictionary& own, std::span<const Needed> needed, const Origin& origin,
                                        std::string& out) {
    const Categories categories = categoriesOf(own, needed, origin);
    std::string prefix = "Qu";
    const auto clashes = [&prefix](const Dictionary& dictionary) { return anyBeginsWith(dictionary, prefix); };
    while (std::ranges::any_of(categories.own, clashes)) prefix += 'u';

    const auto entry = [&](std::string_view key, const Object& value) {
        writeName(out, key);
        origin.write(value, out);
    };
    out += "<<";
    for (const auto& [key, value] : own.entries()) {
        if (categories.find(key) == categories.names.size()) entry(key, value);
    }
    for (std::size_t i = 0; i < categories.names.size(); ++i) {
        writeName(out, categories.names[i]);
        out += "<<";
        for (const auto& [key, value] : categories.own[i].entries()) entry(key, value);
        for (const Needed& one : needed) {
            if (one.category != categories.names[i]) continue;
            writeName(out, nameOf(prefix, one.number));
            out += ' ' + std::to_string(one.number) + " 0 R";
        }
        out += ">>";
    }
    out += ">>";
    return prefix;
}

std::string PaintWriter::text(const PaintContent& content, std::string_view prefix) {
    std::string text;
    for (const PaintPiece& piece : content) {
        text += piece.operators;
        if (piece.resource) writeName(text, nameOf(prefix, numberOf(piece.resource)));
    }
    return text;
}

std::uint32_t PaintWriter::addContent(std::string_view entries, const std::string& content) {
    if (content.size() < worthDeflating) return output_.addStream(entries, content);
    if (!deflater_) deflater_.emplace(6);
    std::string deflated;
    deflater_->deflate(content, deflated);
    if (deflated.size() + 20 >= content.size()) return output_.addStream(entries, content);
    return output_.addStream(std::string(entries) + "/Filter/FlateDecode", deflated);
}

void PaintWriter::writeLayers(const Painting& painting, std::string_view prefix, std::string& out) {
    for (const PaintContent& layer : painting.layers) {
        out += std::to_string(addContent({}, text(layer, prefix))) + " 0 R ";
    }
}

std::string PaintWriter::paintOver(const std::string& entries, const Painting& painting) {
    const Object page = Parser("<<" + entries + ">>").parse();
    if (!page.dictionary()) return entries;
    std::string out;
    Dictionary own;
    std::string contents;
    for (const auto& [key, value] : page.dictionary()->entries()) {
        if (key == "Resources" && value.dictionary()) {
            own = *value.dictionary();
        } else if (key == "Contents") {
            value.write(contents);
        } else {
            writeName(out, key);
            value.write(out);
        }
    }
    out += "/Resources";
    const std::string prefix = writeResources(own, neededBy(painting.layers), Origin::output(), out);
    out += "/Contents[";
    if (!contents.empty()) {
        out += std::to_string(addContent({}, "q")) + " 0 R " + contents + ' ' + std::to_string(addContent({}, "Q")) +
               " 0 R ";
    }
    writeLayers(painting, prefix, out);
    out += ']';
    return out;
}

}  // namespace quillon::pdf
