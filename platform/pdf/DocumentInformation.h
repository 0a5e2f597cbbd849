#pragma once

#include <QByteArray>
#include <QString>

#include <string>
#include <string_view>

namespace quillon {

/// What a document says of itself, in its document information and its XMP metadata alike. An absent text is a null
/// string.
struct DocumentInformation {
    QString title;
    QString author;
    QString subject;
    QString keywords;
    QString creator;
    QString producer;
    QString creationDate;      ///< as in a PDF file, such as D:20261121120000+01'00'
    QString modificationDate;  ///< likewise
    /// The keywords are not those that `existing` metadata were written for.
    bool keywordsReplaced = false;

    /// The XMP packet (ISO 16684-1) that says the same. What `existing` metadata say besides is kept; if they cannot be
    /// read, or are no XMP, nothing of them is.
    [[nodiscard]] std::string metadata(const QByteArray& existing) const;
};

/// A date of a PDF file (ISO 32000-2, 7.9.4) as XMP has it; null when it is none.
[[nodiscard]] QString isoDate(const QString& pdfDate);

}  // namespace quillon
