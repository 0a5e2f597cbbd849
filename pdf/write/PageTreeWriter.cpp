#include "pdf/write/PageTreeWriter.h"

#include <algorithm>
#include <string>

namespace quillon::pdf {

PageTreeWriter::PageTreeWriter(ObjectOutput& output, std::size_t pages)
    : output_(output), root_(output.reserve()), firstPage_(root_ + 1), dropped_(pages) {
    for (std::size_t i = 0; i < pages; ++i) static_cast<void>(output_.reserve());
    for (std::size_t width = pages; width > fanOut;) {
        width = (width + fanOut - 1) / fanOut;
        auto& level = levels_.emplace_back(width);
        for (std::uint32_t& number : level) number = output_.reserve();
    }
}

std::uint32_t PageTreeWriter::pageNumber(std::size_t page) const noexcept {
    return firstPage_ + static_cast<std::uint32_t>(page);
}

std::uint32_t PageTreeWriter::parentOf(std::size_t page) const noexcept {
    return levels_.empty() ? root_ : levels_.front()[page / fanOut];
}

std::size_t PageTreeWriter::write() {
    std::vector<Kid> kids;
    kids.reserve(dropped_.size());
    for (std::size_t page = 0; page < dropped_.size(); ++page) {
        kids.push_back({pageNumber(page), dropped_[page] ? std::size_t{0} : std::size_t{1}});
    }
    const std::vector<std::uint32_t> top{root_};
    for (std::size_t level = 0; level < levels_.size(); ++level) {
        kids = writeLevel(kids, levels_[level], level + 1 < levels_.size() ? levels_[level + 1] : top);
    }
    return writeLevel(kids, top, {}).front().pages;
}

/// Writes the nodes of one level over their kids, leaving out kids without pages. `parents` are the nodes above; empty
/// for the root.
std::vector<PageTreeWriter::Kid> PageTreeWriter::writeLevel(const std::vector<Kid>& kids,
                                                            const std::vector<std::uint32_t>& nodes,
                                                            const std::vector<std::uint32_t>& parents) {
    std::vector<Kid> written;
    for (std::size_t node = 0; node < nodes.size(); ++node) {
        std::size_t pages = 0;
        std::string list;
        const std::size_t end = std::min(kids.size(), (node + 1) * fanOut);
        for (std::size_t kid = node * fanOut; kid < end; ++kid) {
            if (kids[kid].pages == 0) continue;
            pages += kids[kid].pages;
            list += std::to_string(kids[kid].number) + " 0 R ";
        }
        std::string& body = output_.body();
        const std::size_t begin = body.size();
        body += "<</Type/Pages/Count " + std::to_string(pages);
        if (!parents.empty()) body += "/Parent " + std::to_string(parents[node / fanOut]) + " 0 R";
        body += "/Kids[" + list + "]>>";
        output_.close(nodes[node], begin);
        written.push_back({nodes[node], pages});
    }
    return written;
}

}  // namespace quillon::pdf
