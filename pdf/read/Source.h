#pragma once

#include "pdf/io/SlimMutex.h"
#include "pdf/read/SourceDocument.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

class SourceAccess;

/// One input file, however often it is opened: while anyone holds it, opening the same unchanged file again gives the
/// same object, at the price of a `stat`. Cheap to keep by the thousand: the structure of the file is in memory only
/// for the sources used last and is read again when asked for. Every operation may be called from any thread.
class Source : public std::enable_shared_from_this<Source> {
    struct Passkey {};

public:
    /// Only for open().
    Source(Passkey, std::shared_ptr<InputFile> file) : file_(std::move(file)), warnings_(file_->path()) {}

    /// Null when the file cannot be read as a PDF.
    [[nodiscard]] static std::shared_ptr<Source> open(const std::string& path);

    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source();

    [[nodiscard]] const std::string& path() const noexcept { return file_->path(); }
    [[nodiscard]] const std::shared_ptr<InputFile>& file() const noexcept { return file_; }
    /// While the file is locked, the number of pages if it can be told without the key, otherwise 0.
    [[nodiscard]] std::size_t pageCount() const noexcept { return pageCount_; }
    [[nodiscard]] bool isEncrypted() const noexcept { return encrypted_; }
    /// What `utf8Password` gives; everything for a file that is not encrypted. Once a password has opened the file, it
    /// can be read for as long as the source lives: who has not given one must be kept off by the caller. A password
    /// that was tried before costs nothing.
    [[nodiscard]] Access unlock(std::string_view utf8Password);
    /// What those may do who have the user's password: the entry `P`, bit 1 the lowest (ISO 32000-2, table 22).
    [[nodiscard]] std::uint32_t permissions() const noexcept { return permissions_; }
    [[nodiscard]] Version version() const noexcept { return version_; }
    /// What its catalog has; nothing while the document is locked.
    [[nodiscard]] CatalogKeys catalogKeys() const noexcept { return catalogKeys_; }
    [[nodiscard]] std::vector<std::string> warnings() const;

private:
    friend class SourceAccess;
    friend class SourceRegistry;

    bool load();
    void recount();

    std::shared_ptr<InputFile> file_;
    std::unique_ptr<SourceDocument> document_;  // null while dropped; guarded by mutex_
    Source* nextInRegistry_ = nullptr;          // SourceRegistry's
    Warnings warnings_;                         // guarded by mutex_
    Keyring keys_;                              // guarded by mutex_
    std::atomic<std::uint32_t> pageCount_ = 0;
    std::atomic<CatalogKeys> catalogKeys_{};
    std::uint32_t permissions_ = UINT32_MAX;  // set once, before the source is shared
    int holds_ = 0;                           // guarded by mutex_; of SourceHolds
    Version version_ = 10;                    // set once, before the source is shared
    bool encrypted_ = false;                  // likewise
    bool believeCounts_ = true;               // guarded by mutex_
    mutable SlimMutex mutex_;
};

/// Exclusive use of a source's structure for the time of its life, on one thread. Hold it briefly: another thread that
/// asks for the same source waits.
class SourceAccess {
public:
    explicit SourceAccess(Source& source);
    SourceAccess(const SourceAccess&) = delete;
    SourceAccess& operator=(const SourceAccess&) = delete;
    /// Keeps the structure for the next use where memory allows, without the text that was read.
    ~SourceAccess();

    /// Null when the file has gone or changed since it was opened and can no longer be read.
    [[nodiscard]] SourceDocument* document() const noexcept { return source_.document_.get(); }
    [[nodiscard]] Warnings& warnings() const noexcept { return source_.warnings_; }
    /// Drops the structure to free its memory.
    void release() { static_cast<void>(detach()); }
    /// The same for who frees it later: what is returned must not be used any more.
    [[nodiscard]] std::unique_ptr<SourceDocument> detach();
    /// Drops the structure, and from now on every page of the tree is looked at.
    void distrustCounts();

private:
    friend class SourceHolds;

    static void settle(Source& source);
    static void hold(Source& source);
    static void unhold(Source& source);

    Source& source_;
    std::unique_lock<SlimMutex> lock_;
};

}  // namespace quillon::pdf
