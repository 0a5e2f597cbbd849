#pragma once

#include "pdf/write/DocumentWriter.h"
#include "pdf/write/ObjectOutput.h"
#include "pdf/write/PageCopies.h"
#include "pdf/write/PageTreeWriter.h"
#include "pdf/write/SourceCopier.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// Writes the outline of a document (ISO 32000-2, 12.3.3).
class OutlineWriter {
public:
    /// `entries` must outlive the writer.
    explicit OutlineWriter(const std::vector<OutlineEntry>& entries);

    /// Copies the actions of the entries that come from `source`; to be called while that is being
    /// copied.
    void copyActions(const Source& source, const PageCopies& copies, SourceCopier& copier);
    /// Writes the nodes. Returns the number of the root, 0 for an outline without nodes. Destinations on pages that
    /// were dropped are left out.
    [[nodiscard]] std::uint32_t write(ObjectOutput& output, const PageTreeWriter& pages);

private:
    struct Links {
        std::uint32_t parent = none;
        std::uint32_t previous = none;
        std::uint32_t next = none;
        std::uint32_t first = none;
        std::uint32_t last = none;
        std::uint32_t shown = 0;  ///< descendants that are seen when it is open
    };
    static constexpr std::uint32_t none = UINT32_MAX;

    void link();
    void writeEntry(std::size_t index, std::uint32_t root, const PageTreeWriter& pages, std::string& out) const;

    const std::vector<OutlineEntry>& entries_;
    std::unordered_map<const Source*, std::vector<std::uint32_t>> withAction_;
    std::unordered_map<std::uint32_t, std::string> actions_;  // by entry, as they are written
    std::vector<Links> links_;
    Links root_;
};

}  // namespace quillon::pdf
