#pragma once

#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <vector>

namespace quillon::pdf {

/// The page tree of the file being written (ISO 32000-2, 7.7.3): balanced, so that a viewer finds any page of a huge
/// document in a few steps.
class PageTreeWriter {
public:
    /// Reserves the numbers of the root, of `pages` pages and of the nodes between.
    PageTreeWriter(ObjectOutput& output, std::size_t pages);

    [[nodiscard]] std::uint32_t root() const noexcept { return root_; }
    [[nodiscard]] std::uint32_t pageNumber(std::size_t page) const noexcept;
    [[nodiscard]] std::uint32_t parentOf(std::size_t page) const noexcept;

    /// Takes a page that could not be written out of the tree.
    void drop(std::size_t page) { dropped_[page] = true; }
    [[nodiscard]] bool isDropped(std::size_t page) const { return dropped_[page]; }
    /// Writes the nodes. Returns the number of pages in the tree.
    std::size_t write();

private:
    struct Kid {
        std::uint32_t number;
        std::size_t pages;
    };

    std::vector<Kid> writeLevel(const std::vector<Kid>& kids, const std::vector<std::uint32_t>& nodes,
                                const std::vector<std::uint32_t>& parents);

    static constexpr std::size_t fanOut = 64;

    ObjectOutput& output_;
    std::uint32_t root_;
    std::uint32_t firstPage_;
    std::vector<bool> dropped_;
    std::vector<std::vector<std::uint32_t>> levels_;  // from the parents of pages up to below the root
};

}  // namespace quillon::pdf
