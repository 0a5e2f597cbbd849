#pragma once

#include "pdf/Geometry.h"
#include "pdf/read/ContentScout.h"
#include "pdf/read/SourcePage.h"
#include "pdf/security/Encryptor.h"
#include "pdf/write/PageProducer.h"
#include "pdf/write/Painting.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quillon::pdf {

/// The producer that every document names.
inline constexpr const char* producer = "Quillon " QUILLON_VERSION;

/// A page without content.
struct BlankPage {
    Rectangle mediaBox{0, 0, 612, 792};
    int rotation = 0;  ///< 0, 90, 180 or 270 degrees clockwise
};

/// One page of the document to be written.
struct OutputPage {
    /// Null where there is no blank page: one of the usual size.
    std::variant<std::shared_ptr<const BlankPage>, SourcePage, std::shared_ptr<const PageProducer>> origin;
    bool withContent = true;                             ///< false: the content of a source's page stays behind
    std::shared_ptr<const Painting> painting = nullptr;  ///< null: nothing is painted over it
};

/// A node of the outline to be written, in front of its children.
struct OutlineEntry {
    std::string title;                ///< a PDF text string
    std::uint32_t depth = 0;          ///< 0 at the top level
    bool open = false;                ///< show its children
    std::optional<std::size_t> page;  ///< of the output, zero-based, that it leads to
    std::string view;                 ///< what follows the page in its destination (ISO 32000-2, 12.3.2.2)
    std::string look;                 ///< further entries, without references
    SourceText action;                ///< what else it does
};

/// A document to be written.
struct DocumentPlan {
    std::vector<OutputPage> pages;
    /// The source whose catalog and document information the document keeps; null: none.
    std::shared_ptr<Source> base;
    /// Keep the base's outline.
    bool keepOutline = true;
    /// The outline that takes its place.
    std::vector<OutlineEntry> outline;
    /// Entries of the document information (ISO 32000-2, 14.3.3) that replace the base's: key, and value as a PDF text
    /// string; an empty value removes the entry.
    std::vector<std::pair<std::string, std::string>> information;
    /// The XMP metadata of the document, in place of the base's; empty: those stay.
    std::string metadata;
    /// Looks at the content of the pages that are painted over, as far as these were announced to it; null: none were.
    std::shared_ptr<ContentScout> scout;
    /// Nothing: whoever has the file can read it.
    std::optional<Protection> protection;
    /// Wait until the file has reached the disk.
    bool sync = true;
};

struct WriteResult {
    bool written = false;
    std::uint64_t pages = 0;
    std::uint64_t bytes = 0;
    std::vector<std::string> warnings;  ///< what was left out or made up while writing; a line each
};

/// Writes `plan` to the file `target` (file system encoding), whole or not at all; the target may be one of the inputs.
/// Not written are a document without any page, and one whose target cannot be written.
///
/// The sources are copied one after the other, each with all its pages, since the order of pages is only in the page
/// tree; a second thread deflates and writes. The same plan gives the same bytes, unless it is protected: keys are made
/// at random. Pages of a source that is locked are left out.
[[nodiscard]] WriteResult writeDocument(const DocumentPlan& plan, const std::string& target);

}  // namespace quillon::pdf
