#include "pdf/join/FormJoiner.h"

#include "pdf/join/EntryEditor.h"
#include "pdf/object/MayHaveKey.h"
#include "pdf/object/Parser.h"

#include <algorithm>
#include <set>
#include <utility>

namespace quillon::pdf {

void FormJoiner::begin(const SourceCopies& source) {
    source_ = &source;
    reader_ = &source.reader();
    tree_ = {};
    groups_.clear();
    widgets_.clear();
    states_.clear();
    fonts_.clear();
    ownResources_ = {};
    ownOrder_ = {};
    signatures_.begin(*reader_);
    const Object form = reader_->resolve(source.catalog["AcroForm"]);
    hasForm_ = form.dictionary() != nullptr;
    if (!hasForm_) return;
    ownOrder_ = (*form.dictionary())["CO"];
    tree_ = std::move(source.survey.fields);
    groups_.resize(source.pages.groups());
    findWidgets(source);
    for (std::uint32_t i = 0; source.isWhole && i < tree_.nodes().size(); ++i) {
        if (tree_.nodes()[i].kids == 0) keep(i, 0);
    }
    takeNumbers(source);
    if (groups_[0].numbers.empty()) {
        ownResources_ = (*form.dictionary())["DR"];
    } else {
        takeDefaults(source, *form.dictionary());
    }
}

/// Finds out which fields are seen on pages.
void FormJoiner::findWidgets(const SourceCopies& source) {
    std::set<std::pair<const PageFields::Fields*, std::uint32_t>> kept;  // with the group
    std::uint64_t visits = 0;                                            // fields of copies that were not asked for
    const PageTree::Page* const first = source.document.pages().pages().data();
    widgets_.resize(tree_.nodes().size());
    for (const PageCopies::Copy& copy : source.pages.all()) {
        if (!copy.page) continue;
        const auto fields = source.survey.pageFields.on(static_cast<std::size_t>(copy.page - first));
        if (!fields || !kept.emplace(fields.get(), copy.group).second) continue;
        if (!source.pages.isAsked(copy.group) && !reader_->mayVisit(visits += fields->size())) continue;
        for (const std::uint32_t field : *fields) {
            widgets_[field] = true;
            keep(field, copy.group);
        }
    }
}

/// Keeps a field, and those above it.
void FormJoiner::keep(std::uint32_t field, std::uint32_t group) {
    while (field != FieldTree::none && groups_[group].numbers.try_emplace(field, 0).second) {
        field = tree_.nodes()[field].parent;
    }
}

/// Gives numbers and names to the fields that stay. References to others lead nowhere.
void FormJoiner::takeNumbers(const SourceCopies& source) {
    for (std::uint32_t i = 0; i < tree_.nodes().size(); ++i) {
        if (!groups_[0].numbers.contains(i)) source.copier.leaveOut(tree_.nodes()[i].reference.number);
    }
    for (std::uint32_t group = 0; group < groups_.size(); ++group) {
        for (auto& [field, number] : groups_[group].numbers) {
            const FieldTree::Node& node = tree_.nodes()[field];
            if (!isWidget(field)) {
                number = output_->reserve();
                if (group == 0) source.copier.announce(node.reference.number, number);
                if (group != 0) source.pages.overlay(group)->set(node.reference.number, number);
            }
            FieldRenames& names = groups_[group].names;
            if (!node.name.empty() && !names.knows(node.comparable)) {
                names.add(node.comparable, names_.reserve(node.name, node.comparable));
            }
        }
        clearButtons(groups_[group]);
    }
}

/// Finds the buttons that are one field and of which the chosen one is not taken (ISO 32000-2, 12.7.5.2.4).
void FormJoiner::clearButtons(Group& group) {
    std::unordered_map<std::uint32_t, PageFields::Fields> kids;  // of buttons
    for (const auto& [field, number] : group.numbers) {
        const std::uint32_t parent = tree_.nodes()[field].parent;
        if (parent != FieldTree::none && tree_.nodes()[parent].type == FieldTree::Type::Button) {
            kids[parent].push_back(field);
        }
    }
    for (const auto& [field, own] : kids) {
        if (own.size() == tree_.nodes()[field].kids) continue;
        const Object entries = tree_.read(*reader_, field);
        const Object value = entries.dictionary() ? reader_->resolve((*entries.dictionary())["V"]) : Object();
        if (!value.name() || value.isName("Off")) continue;
        const auto chosen = [&](std::uint32_t button) { return isChosen(button, value.name()->value); };
        if (std::ranges::none_of(own, chosen)) group.cleared.insert(field);
    }
}

/// Whether the state is one that the button has when it is chosen.
bool FormJoiner::isChosen(std::uint32_t button, std::string_view state) {
    const auto known = [this](const Object& value) -> const Object& {
        if (!value.reference()) return value;
        const auto [place, isNew] = states_.try_emplace(value.reference()->number);
        if (isNew) place->second = reader_->resolve(value);
        return place->second;
    };
    const Object entries = tree_.read(*reader_, button);
    if (!entries.dictionary()) return false;
    if (reader_->resolve((*entries.dictionary())["AS"]).isName(state)) return true;
    const Object& appearances = known((*entries.dictionary())["AP"]);
    if (!appearances.dictionary()) return false;
    const Object& states = known((*appearances.dictionary())["N"]);
    return states.dictionary() && states.dictionary()->contains(state);
}

void FormJoiner::takeDefaults(const SourceCopies& source, const Dictionary& form) {
    fonts_ = resources_.add(source, form["DR"]);
    const Object needs = reader_->resolve(form["NeedAppearances"]);
    needsAppearances_ = needsAppearances_ || (needs.boolean() && *needs.boolean());
    const bool isFirst = fields_.empty();
    const std::int64_t quadding = reader_->resolve(form["Q"]).integer().value_or(0);
    if (isFirst) quadding_ = quadding;
    ownQuadding_ = quadding == quadding_ ? std::nullopt : std::optional(quadding);
    const Object appearance = reader_->resolve(form["DA"]);
    ownAppearance_.reset();
    if (!appearance.string()) return;
    std::string text = renamedFonts(*appearance.string(), fonts_);
    if (!appearance_) appearance_ = text;
    if (appearance_ != text) ownAppearance_ = std::move(text);
}

bool FormJoiner::edit(const ObjectEditor::Copied& object, std::uint32_t group, std::string_view text,
                      std::string& changed) {
    const std::uint32_t field = tree_.find(object.source);
    const bool isField = field != FieldTree::none;
    const bool maySign = !isField && object.mayHaveValueKey && StraySignatures::mayBeIn(text);
    if (!isField || !editWidget(field, object.output, group, text, changed)) {
        return editOther(isField, maySign, group, text, changed);
    }
    std::string further;
    if (editOther(isField, maySign, group, changed, further)) changed = std::move(further);
    return true;
}

bool FormJoiner::editWidget(std::uint32_t field, std::uint32_t copy, std::uint32_t group, std::string_view text,
                            std::string& changed) {
    if (group >= groups_.size() || !isWidget(field)) return false;
    const auto number = groups_[group].numbers.find(field);
    if (number == groups_[group].numbers.end()) return false;
    number->second = copy;
    if (!mayChange(field, group)) return false;
    const Object parsed = Parser(text).parse();
    Dictionary result;
    if (!parsed.dictionary() || !change(*parsed.dictionary(), field, group, result)) return false;
    Object(std::move(result)).write(changed);
    return true;
}

/// Changes what stands in any object: signatures and texts of annotations that are no fields of the form, and actions.
bool FormJoiner::editOther(bool isField, bool maySign, std::uint32_t group, std::string_view text,
                           std::string& changed) {
    const bool usesFonts = !isField && (!fonts_.empty() || !ownResources_.isNull()) && mayHaveKey(text, "DA");
    if (usesFonts && !ownResources_.isNull()) fonts_ = resources_.add(*source_, std::exchange(ownResources_, {}));
    const bool mayNameFonts = usesFonts && !fonts_.empty();
    const bool mayNameFields =
        group < groups_.size() && groups_[group].names.isAny() && FieldRenames::mayBeNamedIn(text);
    if (!maySign && !mayNameFonts && !mayNameFields) return false;
    const auto rule = [&](const Dictionary& dictionary, std::string_view key,
                          const Object& value) -> std::optional<Object> {
        if (maySign && key == "V" && signatures_.isSignature(dictionary)) return Object();
        if (mayNameFonts && key == "DA") return renamedAppearance(value);
        if (mayNameFields) return groups_[group].names.inAction(*reader_, dictionary, key, value);
        return std::nullopt;
    };
    return editEntries(text, rule, changed);
}

std::optional<Object> FormJoiner::renamedAppearance(const Object& value) {
    const Object text = reader_->resolve(value);
    return text.string() ? std::optional(Object(renamedFonts(*text.string(), fonts_))) : std::nullopt;
}

bool FormJoiner::mayChange(std::uint32_t field, std::uint32_t group) const {
    const FieldTree::Node& node = tree_.nodes()[field];
    const Group& own = groups_[group];
    const bool isTop = node.parent == FieldTree::none;
    if (node.holdsSignature || !fonts_.empty() || own.cleared.contains(field)) return true;
    if (isTop ? ownAppearance_ || ownQuadding_ : !node.namesParent) return true;
    return !node.name.empty() && own.names.isAny() && own.names.renamed(node.name);
}

/// The entries of a field as they are in the joined form. False when they are as they were.
bool FormJoiner::change(const Dictionary& field, std::uint32_t index, std::uint32_t group, Dictionary& changed) {
    const FieldTree::Node& node = tree_.nodes()[index];
    const bool isTop = node.parent == FieldTree::none;
    bool any = false;
    for (const auto& [key, value] : field.entries()) {
        const auto replaced = replacement(key, value, index, group);
        any = any || replaced;
        if (!replaced || !replaced->isNull()) changed.append(key, replaced ? *replaced : value);
    }
    const auto complete = [&](std::string_view key, Object value) {
        if (!field[key].isNull()) return;
        changed.append(std::string(key), std::move(value));
        any = true;
    };
    if (isTop && ownAppearance_) complete("DA", Object(*ownAppearance_));
    if (isTop && ownQuadding_) complete("Q", Object(*ownQuadding_));
    if (!isTop) complete("Parent", Object(tree_.nodes()[node.parent].reference));
    return any;
}

/// What takes the place of an entry of a field; nothing if it stays, null if it goes.
std::optional<Object> FormJoiner::replacement(std::string_view key, const Object& value, std::uint32_t index,
                                              std::uint32_t group) {
    const FieldTree::Node& node = tree_.nodes()[index];
    if (key == "V" && node.holdsSignature) return Object();
    if (key == "V" && groups_[group].cleared.contains(index)) return Object(Name{"Off"});
    if (key == "DA" && !fonts_.empty()) return renamedAppearance(value);
    if (key == "Parent" && node.parent != FieldTree::none && !node.namesParent) {
        return Object(tree_.nodes()[node.parent].reference);
    }
    if (key != "T" || node.name.empty()) return std::nullopt;
    auto name = groups_[group].names.renamed(node.name);
    return name ? std::optional(Object(std::move(*name))) : std::nullopt;
}

void FormJoiner::end(const SourceCopies& source) {
    if (groups_.empty()) return;
    for (auto& [field, number] : groups_[0].numbers) {
        if (isWidget(field)) number = source.copier.numberOf(tree_.nodes()[field].reference.number);
    }
    for (std::uint32_t group = 0; group < groups_.size(); ++group) writeFields(source, group);
    writeOrder(source);
}

/// Writes the fields that are no annotations.
void FormJoiner::writeFields(const SourceCopies& source, std::uint32_t group) {
    std::unordered_map<std::uint32_t, std::string> kids;
    for (const auto& [field, number] : groups_[group].numbers) {
        if (number == 0) continue;
        const std::uint32_t parent = tree_.nodes()[field].parent;
        (parent == FieldTree::none ? fields_ : kids[parent]) += std::to_string(number) + " 0 R ";
    }
    for (const auto& [field, number] : groups_[group].numbers) {
        if (isWidget(field) || number == 0) continue;
        const Object parsed = tree_.read(*reader_, field);
        if (!parsed.dictionary()) continue;
        Dictionary changed;
        static_cast<void>(change(*parsed.dictionary(), field, group, changed));
        const Object entries = withActions(Object(std::move(changed)), group);
        std::string text = "<<";
        for (const auto& [key, value] : entries.dictionary()->entries()) {
            if (key == "Kids" || key == "Parent") continue;
            writeName(text, key);
            text += ' ' + source.copied(value, source.pages.overlay(group));
        }
        const std::uint32_t parent = tree_.nodes()[field].parent;
        if (parent != FieldTree::none) {
            text += "/Parent " + std::to_string(groups_[group].numbers[parent]) + " 0 R";
        }
        if (const auto own = kids.find(field); own != kids.end()) text += "/Kids[" + own->second + ']';
        text += ">>";
        if (source.charge(text.size(), group)) output_->addObject(number, text);
    }
}

/// The field with the fields that its own actions name renamed.
Object FormJoiner::withActions(Object field, std::uint32_t group) {
    if (!groups_[group].names.isAny()) return field;
    std::string text;
    std::string changed;
    field.write(text);
    return editOther(true, false, group, text, changed) ? Parser(changed).parse() : field;
}

/// The order in which fields are calculated, one source after the other.
void FormJoiner::writeOrder(const SourceCopies& source) {
    const Object order = source.reader().resolve(ownOrder_);
    if (!order.array()) return;
    for (const Group& group : groups_) {
        for (const Object& element : *order.array()) {
            if (!element.reference()) continue;
            const auto field = group.numbers.find(tree_.find(element.reference()->number));
            if (field != group.numbers.end() && field->second != 0) order_ += std::to_string(field->second) + " 0 R ";
        }
    }
}

std::string FormJoiner::text() const {
    const std::string resources = resources_.text();
    if (fields_.empty() && resources.empty()) return {};
    std::string text = "<</Fields[" + fields_ + ']';
    if (!order_.empty()) text += "/CO[" + order_ + ']';
    if (!resources.empty()) text += "/DR" + resources;
    if (appearance_) {
        text += "/DA";
        writeString(text, *appearance_);
    }
    if (quadding_ != 0) text += "/Q " + std::to_string(quadding_);
    if (needsAppearances_) text += "/NeedAppearances true";
    return text + ">>";
}

}  // namespace quillon::pdf
