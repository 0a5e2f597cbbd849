#include "pdf/security/CryptFilter.h"

namespace quillon::pdf {

namespace {

std::string nameIn(const Object& parameters) {
    const Name* name = parameters.dictionary() ? (*parameters.dictionary())["Name"].name() : nullptr;
    return name ? name->value : "Identity";
}

const Object& elementOf(const Object& list, std::size_t index) {
    static const Object null;
    return list.array() && index < list.array()->size() ? (*list.array())[index] : null;
}

}  // namespace

std::optional<std::string> cryptFilterOf(const Dictionary& dictionary) {
    const Object& filter = dictionary["Filter"];
    const Object& parameters = dictionary["DecodeParms"];
    if (filter.isName("Crypt")) return nameIn(parameters.array() ? elementOf(parameters, 0) : parameters);
    if (!filter.array()) return std::nullopt;
    for (std::size_t i = 0; i < filter.array()->size(); ++i) {
        const bool alone = filter.array()->size() == 1 && parameters.dictionary();
        if (elementOf(filter, i).isName("Crypt")) return nameIn(alone ? parameters : elementOf(parameters, i));
    }
    return std::nullopt;
}

PlainFilters withoutCryptFilter(const Dictionary& dictionary) {
    const Object& filter = dictionary["Filter"];
    const Object& parameters = dictionary["DecodeParms"];
    if (!cryptFilterOf(dictionary)) return {filter, parameters};
    if (!filter.array()) return {};
    PlainFilters plain;
    Array filters;
    Array list;
    for (std::size_t i = 0; i < filter.array()->size(); ++i) {
        if (elementOf(filter, i).isName("Crypt")) continue;
        filters.push_back(elementOf(filter, i));
        list.push_back(elementOf(parameters, i));
    }
    if (filters.empty()) return plain;
    plain.filter = std::move(filters);
    if (parameters.array()) plain.parameters = std::move(list);
    return plain;
}

}  // namespace quillon::pdf
