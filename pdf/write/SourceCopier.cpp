#include "pdf/write/SourceCopier.h"

#include "pdf/object/StopFinder.h"
#include "pdf/read/StreamText.h"
#include "pdf/write/PaintedPages.h"

#include <algorithm>
#include <array>

namespace quillon::pdf {

namespace {

/// Whether a dictionary begins with a type that is not that of a page, as nearly all with a type do. A page that had
/// another type besides its own would be taken for what it says first.
bool beginsWithOtherType(std::string_view text) {
    constexpr std::string_view key = "/Type";
    const std::size_t at = skipBlank(text, 2);
    if (text.substr(std::min(at, text.size()), key.size()) != key) return false;
    const std::size_t value = skipBlank(text, at + key.size());
    return value < text.size() && text[value] == '/' && !text.substr(value + 1).starts_with("Page");
}

/// Whether `text` is a page's dictionary. Asked of objects that are no page of the tree: a page that an update has
/// removed, for one. Nearly every object passes here, so a quick search for the name comes first.
bool isPageObject(std::string_view text) {
    text.remove_prefix(std::min(skipBlank(text, 0), text.size()));
    if (!text.starts_with("<<") || beginsWithOtherType(text)) return false;
    StopFinder<'P'> stops(text);
    for (std::size_t at = stops.find(1); at < text.size(); at = stops.find(at + 1)) {
        if (text[at - 1] == '/' && text.substr(at, 4) == "Page") return findValue(text, "Type") == "/Page";
    }
    return false;
}

constexpr auto resourcesIndex = static_cast<std::size_t>(InheritedAttribute::Resources);

bool oneOf(std::string_view key, std::span<const std::string_view> names) {
    return std::ranges::any_of(names, [key](std::string_view name) { return keyIs(key, name); });
}

}  // namespace

SourceCopier::SourceCopier(SourceDocument& document, ObjectOutput& output, bool isBase)
    : document_(document),
      reader_(document.reader()),
      output_(output),
      rewriter_(Mapper{this}),
      numbers_(reader_.file().file().size()),
      isBase_(isBase) {
    numbers_.expect(reader_.table().entries.denseSize());
    for (const PageTree::Node& node : document_.pages().nodes()) {
        if (node.number != 0) numbers_.at(node.number) = null;
    }
    for (const PageTree::Page& page : document_.pages().pages()) {
        if (page.number != 0) numbers_.at(page.number) = null;
    }
    if (document_.catalog()) numbers_.at(document_.catalog()->number) = null;
}

void SourceCopier::announceCatalog(std::uint32_t number) {
    if (document_.catalog()) numbers_.at(document_.catalog()->number) = number;
}

std::uint32_t SourceCopier::map(Reference reference) {
    if (overlay_) {
        if (const std::uint32_t own = overlay_->find(reference.number)) return own == null ? 0 : own;
    }
    const std::uint32_t known = numbers_.get(reference.number);
    if (known != 0) return known == null ? 0 : known;
    return discover(reference);
}

std::uint32_t SourceCopier::discover(Reference reference) {
    const CrossReferenceTable& table = reader_.table();
    const CrossReferenceEntry entry = table.entries.get(reference.number);
    using enum CrossReferenceEntry::Kind;
    if (!reader_.exists(reference, entry)) return 0;
    Pending pending{.reference = reference};
    if (entry.kind == InObjectStream) {
        reader_.fetchAhead(entry);
    } else if (entry.kind == InFile) {
        if (const auto stream = copyStreamNow(reference, pending)) return *stream;
        pending.maybeStream = openStreams_.size() == deepestStream;
    }
    pending.number = output_.reserve();
    pending.wasRecovered = table.recovered;
    numbers_.at(reference.number) = pending.number;
    pending_.push_back(pending);
    return pending.number;
}

/// Copies the object if it is a stream. Nothing for any other object, which `pending` tells more of then, and for a
/// stream too deep inside others.
std::optional<std::uint32_t> SourceCopier::copyStreamNow(Reference reference, Pending& pending) {
    for (auto& [open, number] : openStreams_) {
        if (open != reference.number) continue;
        if (number == 0) number = output_.reserve();
        return number;
    }
    const auto object = reader_.findWhole(reference);
    if (!object) return 0;
    if (!object->streamData()) {
        const std::string_view value = object->value();
        if (!isPageObject(value)) {
            if (object->valueEnd == 0 || texts_.size() + value.size() > mostKept) return std::nullopt;
            pending.text = static_cast<std::uint32_t>(texts_.size());
            texts_ += value;
            return std::nullopt;
        }
        numbers_.at(reference.number) = null;
        return 0;
    }
    if (openStreams_.size() == deepestStream) return std::nullopt;
    const std::uint32_t number = writeStream(reference, 0, *object);
    numbers_.at(reference.number) = number;
    return number;
}

std::uint32_t SourceCopier::writeStream(Reference reference, std::uint32_t number, const ObjectText& object) {
    std::string withoutCrypt;
    StreamKey key = reader_.streamKey(reference.number, object, withoutCrypt).value_or(StreamKey());
    const std::string_view dictionary = withoutCrypt.empty() ? object.value() : std::string_view(withoutCrypt);
    const Overlay* const overlay = std::exchange(overlay_, nullptr);  // what a stream refers to is shared by all copies
    openStreams_.emplace_back(reference.number, number);
    // What the dictionary refers to may be a stream as well.
    std::string entries = std::exchange(entries_, {});
    entries.clear();
    std::string_view length;
    bool structured = false;
    std::string repaired;
    if (!writeStreamEntries(dictionary, entries, length, structured)) {
        entries.clear();
        Parser(dictionary).parse().write(repaired);
        writeStreamEntries(repaired, entries, length, structured);
    }
    number = openStreams_.back().second;
    // A part of the structure tree is one place of the document, not any that looks the same.
    if (structured && number == 0) number = output_.reserve();
    openStreams_.pop_back();
    overlay_ = overlay;
    const std::size_t data = object.streamData().value_or(object.valueEnd);
    StreamExtent extent = reader_.streamExtent(reference.number, length, object.offset + data);
    if (!reader_.charge(extent.length)) {
        reader_.warnings().add("the streams of the file overlap each other; this one is left empty", reference.number,
                               static_cast<std::int64_t>(object.offset));
        extent.length = 0;
    }
    number = output_.addFileStream(number, entries, reader_.file(), extent, std::move(key));
    entries_ = std::move(entries);
    return number;
}

/// False when the dictionary is malformed.
bool SourceCopier::writeStreamEntries(std::string_view dictionary, std::string& out, std::string_view& length,
                                      bool& structured) {
    DictionaryScanner scanner(dictionary);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        if (keyIs(entry.key, "Length")) {
            length = entry.value;
        } else if (keyIs(entry.key, "StructParents") || keyIs(entry.key, "StructParent")) {
            structured = writeStructureKey(entry, nullptr, out) || structured;
        } else {
            writeEntry(entry, out);
        }
    }
    return scanner.valid();
}

/// An index into the structure tree, if it is of use in the output.
bool SourceCopier::writeStructureKey(const DictionaryScanner::Entry& entry, const ObjectEditor::Copied* page,
                                     std::string& out) {
    if (!editor_) {
        // The second copy of a page is no part of the tree.
        if (!isBase_ || (page && page->overlay)) return false;
        writeEntry(entry, out);
        return true;
    }
    const std::string key = editor_->structureKey(entry.value, page);
    if (!key.empty()) writeEntry({entry.key, key}, out);
    return !key.empty();
}

void SourceCopier::writeEntry(const DictionaryScanner::Entry& entry, std::string& out) {
    out += '/';
    out += entry.key;
    rewriter_.value(entry.value, out);
}

void SourceCopier::writeEntries(std::string_view dictionary, std::span<const std::string_view> dropped,
                                std::string& out) {
    const std::size_t before = out.size();
    DictionaryScanner scanner(dictionary);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        if (!oneOf(entry.key, dropped)) writeEntry(entry, out);
    }
    if (scanner.valid()) return;
    out.resize(before);
    std::string repaired;
    const Object parsed = Parser(dictionary).parse();
    (parsed.dictionary() ? parsed : Object(Dictionary())).write(repaired);
    writeEntries(repaired, dropped, out);
}

void SourceCopier::drain() {
    while (!pending_.empty()) {
        const Pending next = pending_.back();
        pending_.pop_back();
        copyObject(next);
    }
}

void SourceCopier::copyObject(const Pending& pending) {
    if (pending.text != notKept) {
        // The object that was met last is copied first, so its text is the last.
        text_.assign(texts_, pending.text);
        texts_.resize(pending.text);
        if (pending.wasRecovered == reader_.table().recovered) {
            if (!copyEdited(pending, text_)) writePlain(pending.number, text_);
            return;
        }
    }
    if (pending.maybeStream) {
        const auto whole = reader_.findWhole(pending.reference);
        if (whole && whole->streamData()) {
            writeStream(pending.reference, pending.number, *whole);
            return;
        }
    }
    // What stands in an object stream is there as a whole.
    if (const auto packed = reader_.findPacked(pending.reference, packed_)) {
        if (isPageObject(*packed) || copyEdited(pending, *packed, packed_->mayHaveValueKey())) return;
        writePlain(pending.number, *packed);
        return;
    }
    auto object = editor_ ? reader_.findWhole(pending.reference) : reader_.find(pending.reference);
    if (!object) return;
    const std::string_view text = object->value();
    if (editor_ && isPageObject(text)) return;
    if (copyEdited(pending, text) || tryPlain(pending.number, text)) return;
    if (!editor_) object = reader_.findWhole(pending.reference);
    if (object) writePlain(pending.number, editor_ ? text : object->text());
}

/// Copies an object if the editor changes it.
bool SourceCopier::copyEdited(const Pending& pending, std::string_view text, bool mayHaveValueKey) {
    edited_.clear();
    const ObjectEditor::Copied copied{pending.reference.number, pending.number, overlay_, mayHaveValueKey};
    if (!editor_ || !editor_->edit(copied, text, edited_)) return false;
    writePlain(pending.number, edited_);
    return true;
}

bool SourceCopier::tryPlain(std::uint32_t number, std::string_view text) {
    std::string& body = output_.body();
    const std::size_t begin = body.size();
    if (rewriter_.fast(text, 0, body).status != ReferenceRewriter<Mapper>::Status::Done) return false;
    closePlain(number, begin);
    return true;
}

void SourceCopier::writePlain(std::uint32_t number, std::string_view text) {
    if (tryPlain(number, text)) return;
    const std::size_t begin = output_.body().size();
    rewriter_.slow(text, 0, output_.body());
    closePlain(number, begin);
}

void SourceCopier::closePlain(std::uint32_t number, std::size_t begin) {
    std::string& body = output_.body();
    if (charge(body.size() - begin, charged_)) {
        output_.close(number, begin);
    } else {
        body.resize(begin);
        reader_.warnings().add("the objects of the file overlap each other; some are left out");
    }
}

void SourceCopier::copyValue(std::string_view text, const Overlay* overlay, std::string& out) {
    const Overlay* const own = std::exchange(overlay_, overlay);
    rewriter_.value(text, out);
    overlay_ = own;
}

void SourceCopier::copyEditedValue(std::string_view text, const Overlay* overlay, std::string& out) {
    std::string changed;
    const bool isChanged = editor_ && editor_->edit({0, 0, overlay}, text, changed);
    copyValue(isChanged ? changed : text, overlay, out);
}

std::uint32_t SourceCopier::copyReference(Reference reference) {
    const Overlay* const own = std::exchange(overlay_, nullptr);
    const std::uint32_t number = map(reference);
    overlay_ = own;
    return number;
}

bool SourceCopier::copyPage(const PageJob& job) {
    std::string text = document_.pageText(*job.page);
    if (text.empty() || (!job.asked && !reader_.charge(text.size()))) return false;
    std::vector<Pending> copies;
    if (job.overlay) {
        Group& group = groups_.try_emplace(job.overlay, job.overlay).first->second;
        group.asked = group.asked && job.asked;
        if (job.page->number != 0) group.overlay.set(job.page->number, job.number);
        duplicateAnnotations(text, group.overlay, copies);
        overlay_ = &group.overlay;
    }
    if (editor_) {
        std::string changed;
        if (editor_->edit({job.page->number, job.number, overlay_}, text, changed)) text = std::move(changed);
    }
    // The page is put together apart, since resources written for it go into the body as well.
    page_.clear();
    writePage(job, text, page_);
    std::string& body = output_.body();
    const std::size_t begin = body.size();
    body += page_;
    output_.close(job.number, begin);
    charged_ = job.overlay;
    for (const Pending& copy : copies) copyObject(copy);
    charged_ = nullptr;
    overlay_ = nullptr;
    return true;
}

void SourceCopier::writePage(const PageJob& job, std::string_view text, std::string& out) {
    out += "<</Type/Page/Parent " + std::to_string(job.parent) + " 0 R";
    std::string repaired;
    std::array<bool, inheritedAttributeNames.size()> own{};
    std::string_view contents;
    std::string_view resources;
    DictionaryScanner scanner(soundDictionary(text, repaired));
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        if (keyIs(entry.key, "Type") || keyIs(entry.key, "Parent")) continue;
        if (!job.withContent && keyIs(entry.key, "Contents")) continue;
        if (keyIs(entry.key, "StructParents")) {
            const ObjectEditor::Copied copied{job.page->number, job.number, job.overlay};
            writeStructureKey(entry, &copied, out);
            continue;
        }
        if (job.painting && keyIs(entry.key, "Contents")) {
            contents = entry.value;
            continue;
        }
        if (keyIs(entry.key, "Contents")) {
            writeContents(entry, out);
            continue;
        }
        const auto name =
            std::ranges::find_if(inheritedAttributeNames, [&](auto known) { return keyIs(entry.key, known); });
        if (name != inheritedAttributeNames.end()) {
            if (reader_.isNull(entry.value)) continue;
            const auto which = static_cast<std::size_t>(name - inheritedAttributeNames.begin());
            own[which] = true;
            if (job.painting && which == resourcesIndex) {
                resources = entry.value;
                continue;
            }
        }
        writeEntry(entry, out);
    }
    for (std::size_t i = 0; i < own.size(); ++i) {
        const bool paintedResources = job.painting && i == resourcesIndex;
        if (!own[i] && !paintedResources) writeInherited(job, static_cast<InheritedAttribute>(i), out);
    }
    if (job.painting) {
        const bool inherits = !own[resourcesIndex];
        if (inherits) resources = document_.pages().inherited(*job.page, InheritedAttribute::Resources);
        job.painter->writeEntries(*job.page, *job.painting, {resources, inherits, contents}, out);
    }
    out += ">>";
}

/// Without streams that cannot be read: null may not stand in the array (ISO 32000-2, 7.7.3.3, table 31).
void SourceCopier::writeContents(const DictionaryScanner::Entry& entry, std::string& out) {
    const std::size_t begin = out.size();
    writeEntry(entry, out);
    const std::size_t value = begin + 1 + entry.key.size();
    if (out.find("null", value) == std::string::npos) return;
    const Object contents = Parser(std::string_view(out).substr(value)).parse();
    Array streams = contents.array() ? *contents.array() : Array();
    std::erase_if(streams, [](const Object& stream) { return stream.isNull(); });
    out.resize(begin);
    if (streams.empty()) return;
    out += "/Contents";
    Object(std::move(streams)).write(out);
}

void SourceCopier::writeInherited(const PageJob& job, InheritedAttribute attribute, std::string& out) {
    const std::string_view value = document_.pages().inherited(*job.page, attribute);
    if (!value.empty() && attribute == InheritedAttribute::Resources && !value.ends_with('R')) {
        const std::int64_t node = document_.pages().inheritedFrom(*job.page, attribute);
        out += "/Resources " + std::to_string(inheritedResources(node)) + " 0 R";
    } else if (!value.empty()) {
        writeEntry({inheritedAttributeNames[static_cast<std::size_t>(attribute)], value}, out);
    } else if (attribute == InheritedAttribute::MediaBox) {
        out += "/MediaBox[0 0 612 792]";
    } else if (attribute == InheritedAttribute::Resources) {
        out += "/Resources<<>>";
    }
}

/// Resources that stand directly in a node are shared by the pages below it, as they were.
std::uint32_t SourceCopier::inheritedResources(std::int64_t node) {
    std::uint32_t& number = resources_[node];
    if (number != 0) return number;
    number = output_.reserve();
    writePlain(number, document_.pages().nodes()[static_cast<std::size_t>(node)].attributes[resourcesIndex]);
    return number;
}

void SourceCopier::copyCatalog(std::span<const std::string_view> dropped, std::string& out) {
    const auto object = document_.catalog() ? reader_.findWhole(*document_.catalog()) : std::nullopt;
    if (!object) return;
    std::string changed;
    const bool isChanged = editor_ && editor_->edit({0, 0, nullptr}, object->value(), changed);
    writeEntries(isChanged ? changed : object->text(), dropped, out);
}

bool SourceCopier::charge(std::uint64_t bytes, const Overlay* overlay) {
    const auto group = overlay ? groups_.find(overlay) : groups_.end();
    if (group == groups_.end() || !group->second.asked) return reader_.charge(bytes);
    group->second.charged += bytes;
    return reader_.canHold(group->second.charged);
}

// A page that stands in the output twice is two pages, each with its own annotations: a form field filled in on one, or
// a comment, must not show on the other, and each annotation names its page. Whatever else the page needs is shared,
// and so are, within a group of copies, annotations that several pages name.

void SourceCopier::duplicateAnnotations(std::string_view text, Overlay& overlay, std::vector<Pending>& copies) {
    const std::string_view value = findValue(text, "Annots");
    const auto duplicate = [&](Reference reference) {
        if (overlay.covers(reference.number)) return false;
        copies.push_back({.reference = reference, .number = output_.reserve()});
        overlay.set(reference.number, copies.back().number);
        return true;
    };
    const Object direct = Parser(value).parse();
    if (direct.reference() && overlay.covers(direct.reference()->number)) return;
    const Object annotations = reader_.resolve(direct);
    if (!annotations.array()) return;
    if (direct.reference()) duplicate(*direct.reference());
    std::vector<const Object*> own;
    for (const Object& annotation : *annotations.array()) {
        const Reference* reference = annotation.reference();
        if (!reference || (isPlain(*reference) && duplicate(*reference))) own.push_back(&annotation);
    }
    for (const Object* annotation : own) {
        const Object dictionary = reader_.resolve(*annotation);
        if (!dictionary.dictionary()) continue;
        for (const char* key : {"A", "AA", "Dest", "PA", "Popup"}) {
            collectPrivate((*dictionary.dictionary())[key], overlay, copies, 0);
        }
    }
}

/// Gives the plain objects below `value` numbers of their own: the actions and destinations of an annotation.
void SourceCopier::collectPrivate(const Object& value, Overlay& overlay, std::vector<Pending>& copies, int depth) {
    constexpr int deepest = 16;
    constexpr std::size_t most = 100'000;
    if (depth > deepest || copies.size() > most) return;
    if (const Reference* reference = value.reference()) {
        if (numbers_.get(reference->number) == null || !isPlain(*reference)) return;
        if (overlay.find(reference->number) != 0) return;
        copies.push_back({.reference = *reference, .number = output_.reserve()});
        overlay.set(reference->number, copies.back().number);
        collectPrivate(reader_.parse(*reference), overlay, copies, depth + 1);
    } else if (const Array* array = value.array()) {
        for (const Object& element : *array) collectPrivate(element, overlay, copies, depth + 1);
    } else if (const Dictionary* dictionary = value.dictionary()) {
        for (const auto& [key, entry] : dictionary->entries()) {
            // Parents, the page, and what an action works on: annotations and form fields.
            const bool leadsAway = key == "Parent" || key == "P" || key == "Fields" || key == "T";
            if (!leadsAway) collectPrivate(entry, overlay, copies, depth + 1);
        }
    }
}

/// Whether the object exists, is no stream and no page.
bool SourceCopier::isPlain(Reference reference) {
    if (unusual_.contains(reference.number)) return false;
    const auto object = reader_.findWhole(reference);
    const bool plain = object && !object->streamData() && !isPageObject(object->value());
    if (!plain) unusual_.insert(reference.number);
    return plain;
}

}  // namespace quillon::pdf
