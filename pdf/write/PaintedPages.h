#pragma once

#include "pdf/read/ContentScout.h"
#include "pdf/read/SourceDocument.h"
#include "pdf/write/PaintWriter.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillon::pdf {

class SourceCopier;

/// Paints over pages of one source, without a change to anything that they share with other pages: the streams of the
/// content travel as they are, and the resource dictionary with the painting's resources is a new one.
///
/// The content stands between `q` and `Q`. Content that would come out of these, because it saves or restores the
/// graphics state once too often, or that does not end what it begins, becomes a form instead: readers start and end a
/// form with a state of its own, whatever its content does. What it looks like stays the same, but the structure tree
/// of a tagged file no longer leads to it. To know, every content is decoded and scanned once.
class PaintedPages {
public:
    /// `scout` may have looked at content of the pages already; null where none did.
    PaintedPages(SourceDocument& document, SourceCopier& copier, PaintWriter& writer, ContentScout* scout)
        : document_(document), copier_(copier), writer_(writer), scout_(scout) {}

    /// Texts of values, as they stand in the source.
    struct PageValues {
        std::string_view resources;      ///< empty where there are none
        bool inheritsResources = false;  ///< they stand in the page tree
        std::string_view contents;       ///< empty where there is none, or where it stays behind
    };
    /// Appends Resources and Contents of a painted page.
    void writeEntries(const PageTree::Page& page, const Painting& painting, const PageValues& values, std::string& out);

private:
    struct SharedResources {
        std::uint32_t number;
        std::string prefix;
    };

    [[nodiscard]] std::vector<Reference> streamsOf(std::string_view contents);
    [[nodiscard]] bool mustBeForm(const std::vector<Reference>& streams);
    [[nodiscard]] std::optional<std::string> joined(const std::vector<Reference>& streams);
    [[nodiscard]] std::uint32_t formOf(const PageTree::Page& page, const PageValues& values,
                                       const std::vector<Reference>& streams);
    [[nodiscard]] std::uint32_t writeForm(std::string entries, const PageValues& values,
                                          const std::vector<Reference>& streams);
    std::string writeResources(const PageValues& values, const std::vector<PaintWriter::Needed>& needed,
                               std::string& out);
    [[nodiscard]] PaintWriter::Origin origin();

    SourceDocument& document_;
    SourceCopier& copier_;
    PaintWriter& writer_;
    ContentScout* scout_;
    std::unordered_map<std::uint32_t, bool> mustBeForm_;  // of streams that are a page's whole content
    std::map<std::pair<std::string, std::vector<Reference>>, std::uint32_t> forms_;  // by entries and content
    std::map<std::pair<std::string, std::vector<PaintWriter::Needed>>, SharedResources> shared_;
};

}  // namespace quillon::pdf
