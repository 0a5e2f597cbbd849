#pragma once

#include "pdf/read/SourceDocument.h"

#include <memory>
#include <mutex>
#include <string>
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
    /// 0 while the document is locked.
    [[nodiscard]] std::size_t pageCount() const noexcept { return pageCount_; }
    [[nodiscard]] bool isEncrypted() const noexcept { return encrypted_; }
    [[nodiscard]] Version version() const noexcept { return version_; }
    /// What its catalog has; nothing while the document is locked.
    [[nodiscard]] CatalogKeys catalogKeys() const noexcept { return catalogKeys_; }
    [[nodiscard]] std::vector<std::string> warnings() const;

private:
    friend class SourceAccess;

    bool load();

    std::shared_ptr<InputFile> file_;
    mutable std::mutex mutex_;
    std::unique_ptr<SourceDocument> document_;  // null while dropped; guarded by mutex_
    Warnings warnings_;                         // guarded by mutex_
    std::uint32_t pageCount_ = 0;               // set once, before the source is shared
    Version version_ = 10;                      // likewise
    CatalogKeys catalogKeys_;                   // likewise
    bool encrypted_ = false;                    // likewise
    bool believeCounts_ = true;                 // guarded by mutex_
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
    void release();
    /// The same, and from now on every page of the tree is looked at.
    void distrustCounts();

private:
    Source& source_;
    std::unique_lock<std::mutex> lock_;
};

}  // namespace quillon::pdf
