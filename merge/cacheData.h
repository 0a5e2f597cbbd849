#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <atomic>
#include <cstdint>
#include <memory>

namespace quillon {

/// What the merge does with an entry. The codes are stored in entries as plain integers.
enum MergeMethod : std::int32_t {
    MergeMethodWhole = 0,         ///< every page, in order
    MergeMethodPart = 1,          ///< the pages that the range text names
    MergeMethodCross = 2,         ///< one page in every few, a page a round
    MergeMethodCrossReverse = 3,  ///< the same from the back
    MergeMethodRepeat = 4,        ///< the whole file, once in every round of the Cross entry that it follows
};

/// One input file of the merge list: which file, how much of it is taken and how, and what is known about it.
///
/// Each get and set of the three object fields (url, password, value) is indivisible. The other fields are plain, and
/// so is `swap` as a whole: while a job runs its entries are left unchanged.
class cacheData {
public:
    explicit cacheData(const QUrl& url);  // initWithURL

    cacheData(const cacheData&) = delete;
    cacheData& operator=(const cacheData&) = delete;

    [[nodiscard]] QUrl url() const;
    void setUrl(const QUrl& url);

    /// What the user typed for a protected file; a null string when absent.
    [[nodiscard]] QString password() const;
    void setPassword(const QString& password);

    /// -1 not yet determined, 0 none needed, 1 needed.
    [[nodiscard]] std::int32_t needPassword() const noexcept { return needPassword_.load(std::memory_order_relaxed); }
    void setNeedPassword(std::int32_t needPassword) noexcept {
        needPassword_.store(needPassword, std::memory_order_relaxed);
    }

    /// What the method works with, as the user typed it: for Part the range text, for Cross and Cross reverse the step;
    /// a null string when absent.
    [[nodiscard]] QString value() const;
    void setValue(const QString& value);

    /// A MergeMethod. Any other code stops the program when it is merged.
    [[nodiscard]] std::int32_t mergeMethod() const noexcept { return mergeMethod_; }
    void setMergeMethod(std::int32_t mergeMethod) noexcept { mergeMethod_ = mergeMethod; }

    /// False only while the file needs a password and no working one has been given.
    [[nodiscard]] bool isDecrypted() const noexcept { return isDecrypted_.load(std::memory_order_relaxed); }
    void setIsDecrypted(bool isDecrypted) noexcept { isDecrypted_.store(isDecrypted, std::memory_order_relaxed); }

    /// True when the file is a picture, which becomes one page.
    [[nodiscard]] bool isImage() const noexcept { return isImage_; }
    void setIsImage(bool isImage) noexcept { isImage_ = isImage; }

    /// KiB, rounded down; -1 when not yet measured.
    [[nodiscard]] std::int32_t fileSize() const noexcept { return fileSize_.load(std::memory_order_relaxed); }
    void setFileSize(std::int32_t fileSize) noexcept { fileSize_.store(fileSize, std::memory_order_relaxed); }

    /// -1 when not yet counted.
    [[nodiscard]] std::int32_t pageCount() const noexcept { return pageCount_.load(std::memory_order_relaxed); }
    void setPageCount(std::int32_t pageCount) noexcept { pageCount_.store(pageCount, std::memory_order_relaxed); }

    /// Exchanges the contents with those of `other`, which may be this record itself.
    void swap(cacheData& other);

private:
    /// What the user typed.
    struct Typed {
        QString password;
        QString value;
    };

    void setTyped(QString Typed::*field, const QString& text);
    [[nodiscard]] QString typed(QString Typed::*field) const;

    // Kept small, since a list may have thousands of entries: encoded, since a QUrl takes five times as much memory.
    QByteArray url_;
    std::unique_ptr<Typed> typed_;  // null: all absent
    std::int32_t mergeMethod_ = MergeMethodWhole;
    // Measured when they are shown, which may be while a job runs.
    std::atomic<std::int32_t> needPassword_ = -1;
    std::atomic<std::int32_t> fileSize_ = -1;
    std::atomic<std::int32_t> pageCount_ = -1;
    std::atomic<bool> isDecrypted_ = true;
    bool isImage_ = false;
};

}  // namespace quillon
