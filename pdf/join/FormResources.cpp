#include "pdf/join/FormResources.h"

#include "pdf/join/EntryEditor.h"
#include "pdf/join/Unfolded.h"
#include "pdf/object/Characters.h"

namespace quillon::pdf {

FontNames FormResources::add(const SourceCopies& source, const Object& resources) {
    FontNames renamed;
    const Object own = source.reader().resolve(resources);
    if (!own.dictionary()) return renamed;
    Unfolded unfolded(source);
    std::uint64_t visits = 0;
    for (const auto& [category, value] : lastEntries(*own.dictionary())) {
        const Object entries = source.reader().resolve(*value);
        if (category == "ProcSet" && procedures_.empty()) procedures_ = source.copied(entries);
        if (!entries.dictionary()) continue;
        visits += entries.dictionary()->entries().size();
        if (!source.reader().mayVisit(visits)) break;
        auto& joined = categories_[std::string(category)];
        for (const auto& [name, entry] : lastEntries(*entries.dictionary())) {
            std::string content = unfolded.of(*entry);
            std::string wanted(name);
            for (std::size_t i = 2; category == "Font"; ++i) {
                const auto known = joined.find(wanted);
                if (known == joined.end() || known->second.content == content) break;
                wanted = std::string(name) + '-' + std::to_string(i);
            }
            if (wanted != name) renamed[std::string(name)] = wanted;
            if (!joined.contains(wanted)) joined[wanted] = {source.copied(*entry), std::move(content)};
        }
    }
    return renamed;
}

std::string FormResources::text() const {
    std::string text;
    for (const auto& [category, entries] : categories_) {
        if (entries.empty()) continue;
        writeName(text, category);
        text += "<<";
        for (const auto& [name, resource] : entries) {
            writeName(text, name);
            text += ' ' + resource.copied;
        }
        text += ">>";
    }
    if (!procedures_.empty()) text += "/ProcSet" + procedures_;
    return text.empty() ? text : "<<" + text + ">>";
}

std::string renamedFonts(std::string_view text, const FontNames& names) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        if (text[at] == '/') {
            while (end < text.size() && isRegular(text[end])) ++end;
            const auto renamed = names.find(text.substr(at + 1, end - at - 1));
            if (renamed != names.end()) {
                writeName(result, renamed->second);
                at = end;
                continue;
            }
        }
        result += text.substr(at, end - at);
        at = end;
    }
    return result;
}

}  // namespace quillon::pdf
