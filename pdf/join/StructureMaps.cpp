#include "pdf/join/StructureMaps.h"

#include "pdf/join/EntryEditor.h"
#include "pdf/join/Unfolded.h"

namespace quillon::pdf {

void StructureMaps::add(const SourceCopies& source, const Dictionary& root) {
    newRoles_.clear();
    newClasses_.clear();
    join(source, root["RoleMap"], roles_, newRoles_);
    join(source, root["ClassMap"], classes_, newClasses_);
    const Object namespaces = source.reader().resolve(root["Namespaces"]);
    if (!namespaces.array()) return;
    for (const Object& element : *namespaces.array()) namespaces_ += source.copied(element) + ' ';
}

void StructureMaps::join(const SourceCopies& source, const Object& value, Map& joined, Names& renamed) {
    const Object map = source.reader().resolve(value);
    if (!map.dictionary()) return;
    Unfolded unfolded(source);
    for (const auto& [name, entry] : lastEntries(*map.dictionary())) {
        Meaning meaning{source.copied(*entry), unfolded.of(*entry)};
        std::string wanted(name);
        for (std::size_t i = 2;; ++i) {
            const auto known = joined.find(wanted);
            if (known == joined.end() || known->second.content == meaning.content) break;
            wanted = std::string(name) + '-' + std::to_string(i);
        }
        if (wanted != name) renamed[std::string(name)] = wanted;
        joined.try_emplace(std::move(wanted), std::move(meaning));
    }
}

Object StructureMaps::renamed(const Object& value, const Names& names) {
    if (const Name* name = value.name()) {
        const auto found = names.find(name->value);
        return found == names.end() ? value : Object(Name{found->second});
    }
    if (!value.array()) return value;
    Array result;
    for (const Object& element : *value.array()) result.push_back(renamed(element, names));
    return result;
}

std::string StructureMaps::text() const {
    std::string text;
    const auto add = [&text](std::string_view key, const Map& map) {
        if (map.empty()) return;
        writeName(text, key);
        text += "<<";
        for (const auto& [name, meaning] : map) {
            writeName(text, name);
            text += ' ' + meaning.copied;
        }
        text += ">>";
    };
    add("RoleMap", roles_);
    add("ClassMap", classes_);
    if (!namespaces_.empty()) text += "/Namespaces[" + namespaces_ + ']';
    return text;
}

}  // namespace quillon::pdf
