#include "decoration/MyPdfDocument.h"

#include "decoration/WaterMark.h"

namespace quillon {

std::shared_ptr<MyPdfDocument> MyPdfDocument::initWithURL(const QUrl& url) {
    auto document = std::make_shared<MyPdfDocument>();
    if (!document->open(url)) return nullptr;
    return document;
}

PDFDocument::PageFactory MyPdfDocument::pageClass() const {
    return []() -> std::shared_ptr<PDFPage> { return std::make_shared<WaterMark>(); };
}

}  // namespace quillon
