#include "pdf/join/FormJoiner.h"

#include "pdf/object/Parser.h"

namespace quillon::pdf {

void FormJoiner::begin(const SourceCopies& source) {
    tree_ = {};
    groups_.clear();
    const Object form = source.reader().resolve(source.catalog["AcroForm"]);
    if (!form.dictionary()) return;
    reader_ = &source.reader();
    tree_ = FieldTree(*reader_, *form.dictionary());
    widgets_.assign(tree_.nodes().size(), false);
    groups_.resize(source.pages.groups());
    findWidgets(source);
    for (std::uint32_t i = 0; source.isWhole && i < tree_.nodes().size(); ++i) {
        if (!tree_.nodes()[i].hasKids) keep(i, 0);
    }
    takeNumbers(source);
    if (!groups_[0].numbers.empty()) takeDefaults(source, *form.dictionary());
}

/// Finds out which fields are seen on pages.
void FormJoiner::findWidgets(const SourceCopies& source) {
    std::unordered_map<const PageTree::Page*, std::vector<std::uint32_t>> known;
    for (const PageCopies::Copy& copy : source.pages.all()) {
        if (!copy.page) continue;
        const auto [place, isNew] = known.try_emplace(copy.page);
        if (isNew) {
            const std::string text = source.document.pageText(*copy.page);
            const Object annotations = reader_->resolve(findValue(text, "Annots"));
            if (!annotations.array()) continue;
            for (const Object& annotation : *annotations.array()) {
                const auto field =
                    annotation.reference() ? tree_.find(annotation.reference()->number) : FieldTree::none;
                if (field != FieldTree::none) place->second.push_back(field);
            }
        }
        for (const std::uint32_t field : place->second) {
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
            if (node.parent != FieldTree::none || node.name.empty()) continue;
            auto& names = groups_[group].names;
            if (!names.contains(node.name)) names[node.name] = names_.reserve(node.name);
        }
    }
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

bool FormJoiner::edit(std::uint32_t object, std::uint32_t copy, std::uint32_t group, std::string_view text,
                      std::string& changed) {
    const std::uint32_t field = tree_.find(object);
    if (field == FieldTree::none) return dropSignature(text, changed);
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

/// Takes the value of a signature field that the form does not list, or that has no form.
bool FormJoiner::dropSignature(std::string_view text, std::string& changed) {
    if (text.find("Sig") == std::string_view::npos || text.find("FT") == std::string_view::npos) return false;
    const Object parsed = Parser(text).parse();
    const Dictionary* field = parsed.dictionary();
    if (!field || !(*field)["FT"].isName("Sig") || (*field)["V"].isNull()) return false;
    Dictionary result;
    for (const auto& [key, value] : field->entries()) {
        if (key != "V") result.append(key, value);
    }
    Object(std::move(result)).write(changed);
    return true;
}

bool FormJoiner::mayChange(std::uint32_t field, std::uint32_t group) const {
    const FieldTree::Node& node = tree_.nodes()[field];
    if (node.isSignature || !fonts_.empty()) return true;
    if (node.parent != FieldTree::none) return false;
    const auto name = groups_[group].names.find(node.name);
    return ownAppearance_ || ownQuadding_ || (name != groups_[group].names.end() && name->second != node.name);
}

/// The entries of a field as they are in the joined form. False when they are as they were.
bool FormJoiner::change(const Dictionary& field, std::uint32_t index, std::uint32_t group, Dictionary& changed) {
    const FieldTree::Node& node = tree_.nodes()[index];
    const bool isTop = node.parent == FieldTree::none;
    bool any = false;
    for (const auto& [key, value] : field.entries()) {
        if (key == "V" && node.isSignature) {
            any = true;
        } else if (key == "T" && isTop) {
            const auto joined = groups_[group].names.find(node.name);
            const bool isKnown = joined != groups_[group].names.end();
            any = any || (isKnown && joined->second != node.name);
            changed.append(key, isKnown ? Object(joined->second) : value);
        } else if (key == "DA" && !fonts_.empty()) {
            const Object text = reader_->resolve(value);
            any = true;
            changed.append(key, text.string() ? Object(renamedFonts(*text.string(), fonts_)) : value);
        } else {
            changed.append(key, value);
        }
    }
    if (isTop && ownAppearance_ && field["DA"].isNull()) {
        changed.append("DA", Object(*ownAppearance_));
        any = true;
    }
    if (isTop && ownQuadding_ && field["Q"].isNull()) {
        changed.append("Q", Object(*ownQuadding_));
        any = true;
    }
    return any;
}

void FormJoiner::end(const SourceCopies& source) {
    if (groups_.empty()) return;
    for (auto& [field, number] : groups_[0].numbers) {
        if (isWidget(field)) number = source.copier.numberOf(tree_.nodes()[field].reference.number);
    }
    for (std::uint32_t group = 0; group < groups_.size(); ++group) writeFields(source, group);
    const Object form = reader_->resolve(source.catalog["AcroForm"]);
    if (form.dictionary()) writeOrder(source, *form.dictionary());
    tree_ = {};
    groups_.clear();
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
        const Object parsed = reader_->parse(tree_.nodes()[field].reference);
        if (!parsed.dictionary()) continue;
        Dictionary entries;
        static_cast<void>(change(*parsed.dictionary(), field, group, entries));
        std::string text = "<<";
        for (const auto& [key, value] : entries.entries()) {
            if (key == "Kids" || key == "Parent") continue;
            writeName(text, key);
            text += ' ' + source.copied(value, source.pages.overlay(group));
        }
        const std::uint32_t parent = tree_.nodes()[field].parent;
        if (parent != FieldTree::none) {
            text += "/Parent " + std::to_string(groups_[group].numbers[parent]) + " 0 R";
        }
        if (const auto own = kids.find(field); own != kids.end()) text += "/Kids[" + own->second + ']';
        output_->addObject(number, text + ">>");
    }
}

/// The order in which fields are calculated, one source after the other.
void FormJoiner::writeOrder(const SourceCopies& source, const Dictionary& form) {
    const Object order = source.reader().resolve(form["CO"]);
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
    if (fields_.empty()) return {};
    std::string text = "<</Fields[" + fields_ + ']';
    if (!order_.empty()) text += "/CO[" + order_ + ']';
    const std::string resources = resources_.text();
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
