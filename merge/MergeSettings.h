#pragma once

#include "platform/text/TextAttributes.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quillon {

/// The options of a merge, as the job reads them. An absent text is a null string.
///
/// The job calls the padding and bookmark getters (isAddPage to isRemoveExtension) and the register operations on its
/// background thread, the others, and isAddBookmark once more, on the main thread while it waits.
///
/// An object that answers no, empty and 0 to everything gives a plain merge.
class MergeSettings {
public:
    virtual ~MergeSettings() = default;

    /// Pad the output to an even page count before an input.
    [[nodiscard]] virtual bool isAddPage() const = 0;
    /// True: with a blank page. False: with the first page of the PDF at addedPageUrl.
    [[nodiscard]] virtual bool isAddBlankPage() const = 0;
    /// An empty URL when absent.
    [[nodiscard]] virtual QUrl addedPageUrl() const = 0;

    /// Build an outline for the output.
    [[nodiscard]] virtual bool isAddBookmark() = 0;
    /// Keep the outline of an input beneath its file name.
    [[nodiscard]] virtual bool isKeepOriginalBookmark() const = 0;
    /// Make a node that is named after the file.
    [[nodiscard]] virtual bool isUseFileName() const = 0;
    /// Drop the ending of the file name in node labels.
    [[nodiscard]] virtual bool isRemoveExtension() const = 0;

    [[nodiscard]] virtual bool isAddWaterMark() const = 0;
    [[nodiscard]] virtual QString getWaterMarkContent() const = 0;

    [[nodiscard]] virtual bool isAddPageNumber() const = 0;
    /// 0 left, 1 middle, 2 right.
    [[nodiscard]] virtual std::int32_t pageNumberPosition() const = 0;
    /// The text in front of each number; never absent.
    [[nodiscard]] virtual QString getNextPageNumberPrefixString() const = 0;
    [[nodiscard]] virtual TextAttributes getStringAttr() const = 0;
    [[nodiscard]] virtual std::int32_t getPageNumberBegin() const = 0;
    /// The step between two numbers.
    [[nodiscard]] virtual std::int32_t getPageNumberOffset() const = 0;

    /// Whether a password is needed to open the output, and which.
    [[nodiscard]] virtual bool isUserEncrypt() const = 0;
    [[nodiscard]] virtual QString userEncryptPassword() const = 0;
    /// Whether a password is needed to lift the restrictions of the output, and which.
    [[nodiscard]] virtual bool isOwnerEncrypt() const = 0;
    [[nodiscard]] virtual QString ownerEncryptPassword() const = 0;
    [[nodiscard]] virtual bool isCopyAllowed() const = 0;
    [[nodiscard]] virtual bool isPrintAllowed() const = 0;

    /// Take the output's own document information, before the resolve operations are called.
    virtual void registerTitle(const QString& title) = 0;
    virtual void registerAuthor(const QString& author) = 0;
    virtual void registerSubject(const QString& subject) = 0;
    virtual void registerKeywords(const std::optional<QStringList>& keywords) = 0;
    virtual void registerCreator(const QString& creator) = 0;

    /// The document information to write; absent: none is given.
    [[nodiscard]] virtual QString resolveTitle() = 0;
    [[nodiscard]] virtual QString resolveAuthor() = 0;
    [[nodiscard]] virtual QString resolveSubject() = 0;
    [[nodiscard]] virtual QString resolveKeywords() = 0;
    [[nodiscard]] virtual QString resolveCreator() = 0;
};

}  // namespace quillon
