#pragma once

#include "pdf/read/ObjectReader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quillon::pdf {

/// The attributes that a page inherits from the nodes above it (ISO 32000-2, 7.7.3.4).
enum class InheritedAttribute : std::uint8_t { Resources, MediaBox, CropBox, Rotate };
inline constexpr std::array<std::string_view, 4> inheritedAttributeNames = {"Resources", "MediaBox", "CropBox",
                                                                            "Rotate"};

/// The pages of a file in order (ISO 32000-2, 7.7.3). Made once when a file is opened; it survives loops, nulls, wrong
/// counts, missing types and pages that stand in it twice.
class PageTree {
public:
    struct Page {
        std::uint32_t number = 0;  ///< object number; 0 for a page that stands directly in its node
        std::uint32_t generation = 0;
        std::uint32_t node = 0;    ///< index of the node that holds it
        std::uint32_t direct = 0;  ///< of a direct page, its place among them
    };
    struct Node {
        std::uint32_t number = 0;                                            ///< object number, 0 if direct
        std::int64_t parent = -1;                                            ///< index, -1 for the root
        std::array<std::string, inheritedAttributeNames.size()> attributes;  ///< texts of values, empty where missing
    };

    /// Reads the tree below `root`, the value of the catalog's `Pages`.
    /// With `believeCounts`, a large tree is read without looking at every page.
    PageTree(ObjectReader& reader, const Object& root, bool believeCounts);
    /// The pages `pages`, without a tree: what is left when the tree cannot be found.
    explicit PageTree(const std::vector<Reference>& pages);

    [[nodiscard]] const std::vector<Page>& pages() const noexcept { return pages_; }
    [[nodiscard]] const std::vector<Node>& nodes() const noexcept { return nodes_; }
    [[nodiscard]] const std::string& directPage(const Page& page) const { return directPages_[page.direct]; }
    /// The value that `page` inherits, empty where none.
    [[nodiscard]] std::string_view inherited(const Page& page, InheritedAttribute attribute) const noexcept;
    /// The node whose value that is; -1 if none.
    [[nodiscard]] std::int64_t inheritedFrom(const Page& page, InheritedAttribute attribute) const noexcept;

    /// Bytes held, but for the texts of attributes.
    [[nodiscard]] std::size_t memory() const noexcept {
        return pages_.capacity() * sizeof(Page) + nodes_.capacity() * sizeof(Node);
    }

private:
    struct Level {
        std::uint32_t node = 0;
        Array kids;
        std::size_t next = 0;
        std::size_t firstPage = 0;
        std::int64_t stated = -1;  // Count
        bool trusted = false;
    };

    void walk(ObjectReader& reader, const Object& root, bool trustCounts);
    void enter(ObjectReader& reader, std::string_view text, std::uint32_t number, std::int64_t parent, bool trustCounts,
               std::vector<Level>& levels);
    void visit(ObjectReader& reader, const Object& kid, bool trustCounts, std::vector<Level>& levels);

    std::vector<Page> pages_;
    std::vector<Node> nodes_;
    std::vector<std::string> directPages_;
    std::unordered_set<std::uint32_t> seenNodes_;
    std::uint64_t visits_ = 0;
    bool countsAddUp_ = true;
};

}  // namespace quillon::pdf
