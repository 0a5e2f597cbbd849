#pragma once

#include "pdf/Geometry.h"
#include "pdf/read/CatalogKeys.h"
#include "pdf/read/ObjectReader.h"
#include "pdf/read/PageTree.h"
#include "pdf/security/Keyring.h"

#include <memory>
#include <optional>
#include <string>

namespace quillon::pdf {

/// A PDF version, `major` * 10 + `minor`.
using Version = int;

/// The structure of one file as read into memory: cross-reference data, catalog, page tree. Can be dropped and read
/// again at any time (see Source). Not thread-safe.
class SourceDocument {
public:
    /// Null when no document can be found in the file. `warnings` must outlive the result.
    /// With `believeCounts`, a large page tree is read without looking at every page. `keys` learns how the file is
    /// protected, or says how it can be read.
    [[nodiscard]] static std::unique_ptr<SourceDocument> load(const std::shared_ptr<InputFile>& file,
                                                              Warnings& warnings, bool believeCounts, Keyring& keys);

    [[nodiscard]] ObjectReader& reader() noexcept { return reader_; }
    /// While the document is locked, what can be read of them without the key: all or none.
    [[nodiscard]] const PageTree& pages() const noexcept { return *pages_; }
    [[nodiscard]] bool isEncrypted() const noexcept { return reader_.decryptor() != nullptr; }
    /// Whether nothing but the structure can be read, for want of a password.
    [[nodiscard]] bool isLocked() const noexcept { return isEncrypted() && reader_.decryptor()->isLocked(); }
    /// The highest version that the header or the catalog names.
    [[nodiscard]] Version version() const noexcept { return version_; }
    /// The reference of the catalog; nothing when it was never found and the pages were collected without it.
    [[nodiscard]] std::optional<Reference> catalog() const noexcept { return catalog_; }

    [[nodiscard]] CatalogKeys catalogKeys() const noexcept { return catalogKeys_; }

    /// Frees what was read of objects; the structure stays.
    void trim();
    /// Bytes of the structure.
    [[nodiscard]] std::size_t memory() const noexcept;
    /// Bytes of objects that are kept until `trim`.
    [[nodiscard]] std::size_t textInMemory() const noexcept { return reader_.textInMemory() + pageText_.capacity(); }

    /// The text of the dictionary of a page, well-formed; empty when it cannot be read. A node that the tree took for a
    /// page gives its first page. Valid until the next call, or `trim`; that of the same page again costs nothing.
    [[nodiscard]] const std::string& pageText(const PageTree::Page& page);
    /// Whether `pageText` has met a node in the place of a page: the page tree must be read again without believing it.
    [[nodiscard]] bool wasMisled() const noexcept { return misled_; }
    /// MediaBox or CropBox, inherited if need be. Nothing when missing, or no rectangle, or without area.
    [[nodiscard]] std::optional<Rectangle> box(const PageTree::Page& page, InheritedAttribute attribute);
    /// 0, 90, 180 or 270 degrees clockwise.
    [[nodiscard]] int rotation(const PageTree::Page& page);

private:
    SourceDocument(const std::shared_ptr<InputFile>& file, Warnings& warnings, bool believeCounts)
        : reader_(file, warnings), believeCounts_(believeCounts) {}

    bool readStructure(Keyring& keys);
    void readProtection(Keyring& keys);
    bool readTree();
    bool collectPages();
    void readVersion(const Dictionary* catalog);
    std::string readPageText(const PageTree::Page& page);
    Object attribute(const PageTree::Page& page, InheritedAttribute attribute);

    ObjectReader reader_;
    std::unique_ptr<PageTree> pages_;
    std::optional<Reference> catalog_;
    CatalogKeys catalogKeys_;
    Version version_ = 10;
    bool believeCounts_;
    bool misled_ = false;
    std::string pageText_;  // of the page asked for last
    const PageTree::Page* pageOfText_ = nullptr;
    bool wasRecovered_ = false;  // the file had been scanned by the time that it was read
};

}  // namespace quillon::pdf
