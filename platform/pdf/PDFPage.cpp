#include "platform/pdf/PDFPage.h"

#include "platform/pdf/DrawingContext.h"

#include <utility>

namespace quillon {

namespace {

constexpr pdf::Rectangle letter{0, 0, 612, 792};

QRectF toQt(const pdf::Rectangle& box) {
    return {box.left, box.bottom, box.width(), box.height()};
}

}  // namespace

PDFPage::PDFPage() = default;

PDFPage::PDFPage(std::shared_ptr<const Image> image) : image_(std::move(image)) {}

PDFPage::~PDFPage() = default;

void PDFPage::drawWithBox(PDFDisplayBox) {
    if (DrawingContext* context = DrawingContext::current()) context->drawContent(*this);
}

QRectF PDFPage::boundsForBox(PDFDisplayBox box) const {
    if (image_) return toQt(image_->mediaBox());
    if (!source_) return toQt(letter);
    const pdf::SourceAccess access(*source_->source);
    pdf::SourceDocument* document = access.document();
    if (!document || source_->index >= document->pages().pages().size()) return toQt(letter);
    const auto& page = document->pages().pages()[source_->index];
    const pdf::Rectangle media = document->box(page, pdf::InheritedAttribute::MediaBox).value_or(letter);
    if (box == PDFDisplayBox::MediaBox) return toQt(media);
    return toQt(document->box(page, pdf::InheritedAttribute::CropBox).value_or(media));
}

int PDFPage::rotation() const {
    if (!source_) return 0;
    const pdf::SourceAccess access(*source_->source);
    pdf::SourceDocument* document = access.document();
    if (!document || source_->index >= document->pages().pages().size()) return 0;
    return document->rotation(document->pages().pages()[source_->index]);
}

}  // namespace quillon
