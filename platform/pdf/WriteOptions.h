#pragma once

#include <QString>

namespace quillon {

// Keys of the options of PDFDocument::writeToURL. Values are texts, of the two permissions booleans; an absent key
// leaves the document's own value, and a permission allowed.
inline const QString kCGPDFContextTitle = QStringLiteral("kCGPDFContextTitle");
inline const QString kCGPDFContextAuthor = QStringLiteral("kCGPDFContextAuthor");
inline const QString kCGPDFContextSubject = QStringLiteral("kCGPDFContextSubject");
inline const QString kCGPDFContextKeywords = QStringLiteral("kCGPDFContextKeywords");
inline const QString kCGPDFContextCreator = QStringLiteral("kCGPDFContextCreator");
inline const QString kCGPDFContextUserPassword = QStringLiteral("kCGPDFContextUserPassword");
inline const QString kCGPDFContextOwnerPassword = QStringLiteral("kCGPDFContextOwnerPassword");
inline const QString kCGPDFContextAllowsCopying = QStringLiteral("kCGPDFContextAllowsCopying");
inline const QString kCGPDFContextAllowsPrinting = QStringLiteral("kCGPDFContextAllowsPrinting");

// A boolean. With true the finished file is not forced to the disk before it takes its place: quicker, but after a
// power failure the target may be damaged.
inline const QString kWriteWithoutSync = QStringLiteral("writeWithoutSync");

}  // namespace quillon
