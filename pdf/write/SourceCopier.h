#pragma once

#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/ObjectMap.h"
#include "pdf/object/ReferenceRewriter.h"
#include "pdf/read/SourceDocument.h"
#include "pdf/write/ObjectEditor.h"
#include "pdf/write/ObjectOutput.h"
#include "pdf/write/Painting.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillon::pdf {

class PaintedPages;

/// Copies pages of one source and everything reachable from them.
///
/// Every object of the source is written once, under a number given when a reference to it is first met; plain objects
/// wait in a list until then, streams are written at once, so that the number of an equal stream can stand in the
/// reference. Only a page that was announced is ever copied: references to any other page, and to the nodes of the page
/// tree, become null, so that a link to a page that was not taken cannot drag it along.
class SourceCopier {
public:
    /// `isBase`: the source's catalog is the output's.
    SourceCopier(SourceDocument& document, ObjectOutput& output, bool isBase);

    /// Announces that the object is written as `number`, by others than the copier if it is no page; its references
    /// lead there.
    void announce(std::uint32_t object, std::uint32_t number) { numbers_.at(object) = number; }
    /// Announces that the catalog is written as `number`.
    void announceCatalog(std::uint32_t number);
    /// References to the object become null.
    void leaveOut(std::uint32_t object) { numbers_.at(object) = null; }
    /// Whether the object has been met, or announced, and not been left out.
    [[nodiscard]] bool isTaken(std::uint32_t object) const { return numberOf(object) != 0; }
    /// Its number in the output; 0 if it is not taken.
    [[nodiscard]] std::uint32_t numberOf(std::uint32_t object) const {
        const std::uint32_t number = numbers_.get(object);
        return number == null ? 0 : number;
    }
    /// Shows plain objects to `editor` before they are copied; null: none. It must outlive the copier.
    void setEditor(ObjectEditor* editor) {
        editor_ = editor;
        editsLinks_ = editor && editor->editsLinks();
    }

    struct PageJob {
        const PageTree::Page* page = nullptr;
        std::uint32_t number = 0;            ///< of the copy
        std::uint32_t parent = 0;            ///< of its node
        bool withContent = true;             ///< carry the page's own content over
        const Painting* painting = nullptr;  ///< to be painted over the page; null: nothing
        PaintedPages* painter = nullptr;     ///< needed for that
        const Overlay* overlay =
            nullptr;  ///< for a copy other than the first; null for that. Must outlive the copier's use
        bool asked =
            true;  ///< this copy was asked for; false if only the source's own tree names the page several times
    };
    /// Copies a page, and with it the streams that it reaches; its plain objects follow in `drain`. False when the page
    /// cannot be read.
    [[nodiscard]] bool copyPage(const PageJob& job);
    /// Appends the entries of the catalog without the keys in `dropped`.
    void copyCatalog(std::span<const std::string_view> dropped, std::string& out);
    /// Appends the value `text` of the source to `out`, references rewritten; with `overlay` (null: none) those that it
    /// names lead to its copies.
    void copyValue(std::string_view text, const Overlay* overlay, std::string& out);
    /// The same for a value that the editor is shown before.
    void copyEditedValue(std::string_view text, const Overlay* overlay, std::string& out);
    /// The number of the first copy of an object, which follows if it was not met before; 0 if there is none.
    [[nodiscard]] std::uint32_t copyReference(Reference reference);
    /// Copies every plain object that was met and not copied yet.
    void drain();
    /// Counts bytes that others write of the source for the copies of `overlay`, null for the first ones. False once
    /// that is more than a file of its size can hold. Further copies that were asked for count anew, those that only
    /// the source's own tree has do not.
    [[nodiscard]] bool charge(std::uint64_t bytes, const Overlay* overlay);

private:
    static constexpr std::uint32_t null = Overlay::none;
    static constexpr std::size_t deepestStream = 8;
    static constexpr std::uint32_t notKept = UINT32_MAX;
    static constexpr std::size_t mostKept = 1U << 20U;

    struct Pending {
        Reference reference;
        std::uint32_t number = 0;
        bool maybeStream = false;
        bool wasRecovered = false;  // the file had been scanned when the object was met
        // Where the value begins in `texts_`; `notKept` for one that must be looked up again.
        std::uint32_t text = notKept;
    };
    /// What copies of pages other than the first have of their own, besides what their overlay says.
    struct Group {
        explicit Group(const Overlay* below) : overlay(below) {}
        Overlay overlay;
        std::uint64_t charged = 0;
        bool asked = true;
    };
    struct Mapper {
        SourceCopier* copier;
        std::uint32_t operator()(Reference reference) const { return copier->map(reference); }
        [[nodiscard]] bool editsLinks() const { return copier->editsLinks_; }
        [[nodiscard]] bool mayReplace(std::string_view text) const {
            return copier->overlay_ || copier->editor_->mayReplace(text);
        }
        [[nodiscard]] std::optional<std::string> destination(std::string_view text) const {
            return copier->editor_->destination(text, copier->overlay_);
        }
        [[nodiscard]] Object withLinks(const Object& value) const {
            return copier->editor_->withLinks(value, copier->overlay_);
        }
    };

    std::uint32_t map(Reference reference);
    std::uint32_t discover(Reference reference);
    std::optional<std::uint32_t> copyStreamNow(Reference reference, Pending& pending);
    std::uint32_t writeStream(Reference reference, std::uint32_t number, const ObjectText& object);
    void copyObject(const Pending& pending);
    bool copyEdited(const Pending& pending, std::string_view text, bool mayHaveValueKey = true);
    void writePlain(std::uint32_t number, std::string_view text);
    bool tryPlain(std::uint32_t number, std::string_view text);
    void closePlain(std::uint32_t number, std::size_t begin);
    bool writeStreamEntries(std::string_view dictionary, std::string& out, std::string_view& length, bool& structured);
    void writeEntry(const DictionaryScanner::Entry& entry, std::string& out);
    void writeEntries(std::string_view dictionary, std::span<const std::string_view> dropped, std::string& out);
    void writePage(const PageJob& job, std::string_view text, std::string& out);
    void writeContents(const DictionaryScanner::Entry& entry, std::string& out);
    void writeInherited(const PageJob& job, InheritedAttribute attribute, std::string& out);
    bool writeStructureKey(const DictionaryScanner::Entry& entry, const ObjectEditor::Copied* page, std::string& out);
    void duplicateAnnotations(std::string_view text, Overlay& overlay, std::vector<Pending>& copies);
    void collectPrivate(const Object& value, Overlay& overlay, std::vector<Pending>& copies, int depth);
    bool isPlain(Reference reference);
    std::uint32_t inheritedResources(std::int64_t node);

    SourceDocument& document_;
    ObjectReader& reader_;
    ObjectOutput& output_;
    ReferenceRewriter<Mapper> rewriter_;
    ObjectMap<std::uint32_t> numbers_;  // 0: not met yet
    const Overlay* overlay_ = nullptr;  // of the page being copied
    const Overlay* charged_ = nullptr;  // the copies that what is copied counts for
    std::unordered_map<const Overlay*, Group> groups_;
    std::unordered_set<std::uint32_t> unusual_;  // annotations and the like that are streams or pages
    bool isBase_;
    ObjectEditor* editor_ = nullptr;
    bool editsLinks_ = false;
    std::shared_ptr<const ObjectStream> packed_;  // that of the object being copied
    // Kept for their room.
    std::string edited_;   // what the editor makes of an object
    std::string entries_;  // of a stream's dictionary
    std::string page_;     // the dictionary of a page
    std::string text_;     // of the object being copied, if it has waited in `texts_`
    std::vector<Pending> pending_;
    std::string texts_;  // of objects that wait, one behind the other in their order
    std::vector<std::pair<std::uint32_t, std::uint32_t>>
        openStreams_;  // source number and number in the output, 0 if none yet
    std::unordered_map<std::int64_t, std::uint32_t> resources_;  // of page tree nodes
};

}  // namespace quillon::pdf
