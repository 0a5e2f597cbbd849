#pragma once

#include "platform/pdf/PDFDocument.h"

#include <QUrl>

#include <memory>

namespace quillon {

/// A document whose pages are WaterMark pages, so that they carry the decoration wherever they are inserted.
class MyPdfDocument final : public PDFDocument {
public:
    /// An empty document.
    MyPdfDocument() = default;

    /// Opens a file. Null when it cannot be read as a PDF. A protected file opens locked.
    [[nodiscard]] static std::shared_ptr<MyPdfDocument> initWithURL(const QUrl& url);

    [[nodiscard]] PageFactory pageClass() const override;
};

}  // namespace quillon
