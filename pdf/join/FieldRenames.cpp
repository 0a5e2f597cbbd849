#include "pdf/join/FieldRenames.h"

#include "pdf/join/FieldNames.h"

#include <utility>

namespace quillon::pdf {

void FieldRenames::add(const std::string& comparableName, std::string ending) {
    any_ = any_ || !ending.empty();
    endings_[comparableName] = std::move(ending);
}

const std::string* FieldRenames::endingOf(std::string_view name) const {
    const auto found = endings_.find(FieldNames::comparable(name));
    return found == endings_.end() ? nullptr : &found->second;
}

std::optional<std::string> FieldRenames::renamed(std::string_view name) const {
    std::string_view first = name;
    const std::string* ending = endingOf(first);
    if (!ending) {
        first = name.substr(0, FieldNames::firstLength(name));
        ending = endingOf(first);
    }
    if (!ending || ending->empty()) return std::nullopt;
    return FieldNames::ended(first, *ending).append(name.substr(first.size()));
}

bool FieldRenames::mayBeNamedIn(std::string_view text) {
    const auto has = [text](std::string_view word) { return text.find(word) != std::string_view::npos; };
    return has("ResetForm") || has("SubmitForm") || has("Hide");
}

std::optional<Object> FieldRenames::inAction(ObjectReader& reader, const Dictionary& action, std::string_view key,
                                             const Object& value) {
    if (key != "Fields" && key != "T") return std::nullopt;
    const Object kind = reader.resolve(action["S"]);
    const bool names = key == "T" ? kind.isName("Hide") : kind.isName("ResetForm") || kind.isName("SubmitForm");
    if (!names || !reader.mayVisit(++visits_)) return std::nullopt;
    const Object fields = reader.resolve(value);
    const auto renamedIn = [this](const Object& object) {
        return object.string() ? renamed(*object.string()) : std::nullopt;
    };
    if (fields.string()) visits_ += fields.string()->size();
    if (auto single = renamedIn(fields)) return Object(std::move(*single));
    if (!fields.array()) return std::nullopt;
    visits_ += fields.array()->size();
    Array result;
    bool any = false;
    for (const Object& field : *fields.array()) {
        auto name = renamedIn(field);
        any = any || name;
        result.push_back(name ? Object(std::move(*name)) : field);
    }
    return any ? std::optional(Object(std::move(result))) : std::nullopt;
}

}  // namespace quillon::pdf
