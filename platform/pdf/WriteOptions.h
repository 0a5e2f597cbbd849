#pragma once

#include <QString>

namespace quillon {

// Keys of the options of PDFDocument::writeToURL. Values are texts, of the two permissions booleans; an absent key leaves
// the document's own value, and a permission allowed.
inline const QString kCGPDFContextTitle = QStringLiteral("kCGPDFContextTitle");
inline const QString kCGPDFContextAuthor = QStringLiteral("kCGPDFContextAuthor");
inline const QString kCGPDFContextSubject = QStringLiteral("kCGPDFContextSubject");
inline const QString kCGPDFContextKeywords = QStringLiteral("kCGPDFContextKeywords");
inline const QString kCGPDFContextCreator = QStringLiteral("kCGPDFContextCreator");
inline const QString kCGPDFContextUserPassword = QStringLiteral("kCGPDFContextUserPassword");
inline const QString kCGPDFContextOwnerPassword = QStringLiteral("kCGPDFContextOwnerPassword");
inline const QString kCGPDFContextAllowsCopying = QStringLiteral("kCGPDFContextAllowsCopying");
inline const QString kCGPDFContextAllowsPrinting = QStringLiteral("kCGPDFContextAllowsPrinting");

// A boolean: do not wait until the file has reached the disk. For comparisons with programs that do not.
inline const QString kWriteWithoutSync = QStringLiteral("writeWithoutSync");

}  // namespace quillon
