#pragma once

#include <QString>

namespace quillon {

// Keys of PDFDocument::documentAttributes.
inline const QString PDFDocumentTitleAttribute = QStringLiteral("Title");
inline const QString PDFDocumentAuthorAttribute = QStringLiteral("Author");
inline const QString PDFDocumentSubjectAttribute = QStringLiteral("Subject");
inline const QString PDFDocumentKeywordsAttribute = QStringLiteral("Keywords");
inline const QString PDFDocumentCreatorAttribute = QStringLiteral("Creator");

}  // namespace quillon
