#include "platform/pdf/PDFDocument.h"

#include "pdf/read/SourceHolds.h"
#include "platform/pdf/DocumentAttributes.h"
#include "platform/pdf/DocumentInformation.h"
#include "platform/pdf/DrawingContext.h"
#include "platform/pdf/FilePath.h"
#include "platform/pdf/MarkPainter.h"
#include "platform/pdf/OutlineTree.h"
#include "platform/pdf/PDFOutline.h"
#include "platform/pdf/TextString.h"
#include "platform/pdf/WriteOptions.h"

#include <algorithm>
#include <any>
#include <array>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace quillon {

namespace {

/// The entries of the document information that the write options replace.
std::vector<std::pair<std::string, std::string>> informationFrom(const QVariantMap& options) {
    const std::array<std::pair<QString, const char*>, 5> keys = {{{kCGPDFContextTitle, "Title"},
                                                                  {kCGPDFContextAuthor, "Author"},
                                                                  {kCGPDFContextSubject, "Subject"},
                                                                  {kCGPDFContextKeywords, "Keywords"},
                                                                  {kCGPDFContextCreator, "Creator"}}};
    std::vector<std::pair<std::string, std::string>> information;
    for (const auto& [option, key] : keys) {
        if (options.contains(option)) information.emplace_back(key, toTextString(options.value(option).toString()));
    }
    return information;
}

/// The metadata of a document as they stand in its file, and its dates.
QByteArray readMetadata(pdf::SourceDocument& document, DocumentInformation& information) {
    pdf::ObjectReader& reader = document.reader();
    const pdf::Object old = reader.resolve(reader.trailer()["Info"]);
    const auto dateOf = [&](const char* key) {
        const pdf::Object value = old.dictionary() ? reader.resolve((*old.dictionary())[key]) : pdf::Object();
        return value.string() ? fromTextString(*value.string()) : QString();
    };
    information.creationDate = dateOf("CreationDate");
    information.modificationDate = dateOf("ModDate");
    const pdf::Object catalog = document.catalog() ? reader.parse(*document.catalog()) : pdf::Object();
    if (!catalog.dictionary() || !(*catalog.dictionary())["Metadata"].reference()) return {};
    constexpr std::size_t most = 4U << 20U;
    const auto bytes = reader.decodedStream(*(*catalog.dictionary())["Metadata"].reference(), most);
    return bytes ? QByteArray::fromStdString(*bytes) : QByteArray();
}

/// Nothing when there is no password.
std::optional<pdf::Protection> protectionFrom(const QVariantMap& options) {
    if (!options.contains(kCGPDFContextUserPassword) && !options.contains(kCGPDFContextOwnerPassword)) return {};
    pdf::Protection protection;
    protection.userPassword = options.value(kCGPDFContextUserPassword).toString().toStdString();
    protection.ownerPassword = options.value(kCGPDFContextOwnerPassword).toString().toStdString();
    protection.allowsCopying = options.value(kCGPDFContextAllowsCopying, true).toBool();
    protection.allowsPrinting = options.value(kCGPDFContextAllowsPrinting, true).toBool();
    return protection;
}

}  // namespace

PDFDocument::PDFDocument() = default;
PDFDocument::~PDFDocument() = default;

std::shared_ptr<PDFDocument> PDFDocument::initWithURL(const QUrl& url) {
    auto document = std::make_shared<PDFDocument>();
    return document->open(url) ? document : nullptr;
}

bool PDFDocument::open(const QUrl& url) {
    const std::string path = filePathOf(url);
    if (path.empty()) return false;
    source_ = pdf::Source::open(path);
    if (!source_) return false;
    opening_ = pdf::newOpening();
    access_ = source_->unlock({});
    if (!isLocked()) takePages();
    return true;
}

void PDFDocument::takePages() {
    pages_ = PageList(source_->pageCount(), [this](std::size_t index) { return makePage(index); });
}

PDFDocument::PageFactory PDFDocument::pageClass() const {
    return [] { return std::make_shared<PDFPage>(); };
}

std::shared_ptr<PDFPage> PDFDocument::makePage(std::size_t index) const {
    auto page = pageClass()();
    page->source_ = pdf::SourcePage{source_, static_cast<std::uint32_t>(index), opening_};
    return page;
}

bool PDFDocument::isEncrypted() const {
    return source_ && source_->isEncrypted();
}

bool PDFDocument::isLocked() const {
    return access_ == pdf::Access::None;
}

bool PDFDocument::permits(unsigned bit) const {
    if (access_ != pdf::Access::User) return access_ == pdf::Access::Owner;
    return (source_->permissions() >> (bit - 1) & 1U) != 0;
}

bool PDFDocument::allowsCopying() const {
    constexpr unsigned copying = 5;
    return permits(copying);
}

bool PDFDocument::allowsPrinting() const {
    constexpr unsigned printing = 3;
    return permits(printing);
}

bool PDFDocument::unlockWithPassword(const QString& password) {
    if (!isEncrypted()) return true;
    if (password.isNull()) return false;
    const pdf::Access access = source_->unlock(password.toStdString());
    if (access == pdf::Access::None) return false;
    const bool wasLocked = isLocked();
    access_ = std::max(access_, access);
    if (wasLocked) takePages();
    return true;
}

int PDFDocument::pageCount() const {
    const bool hidden = isLocked() && listedPages() == 0;
    return hidden ? static_cast<int>(source_->pageCount()) : listedPages();
}

int PDFDocument::listedPages() const {
    return static_cast<int>(pages_.size());
}

std::shared_ptr<PDFPage> PDFDocument::pageAtIndex(int index) {
    if (index < 0 || index >= listedPages()) return nullptr;
    return pages_.at(static_cast<std::size_t>(index));
}

int PDFDocument::indexForPage(const std::shared_ptr<PDFPage>& page) {
    if (!page) return -1;
    const std::size_t index = pages_.find(page.get());
    return index == pages_.size() ? -1 : static_cast<int>(index);
}

void PDFDocument::insertPage(const std::shared_ptr<PDFPage>& page, int atIndex) {
    if (!page) return;
    pages_.insert(static_cast<std::size_t>(std::clamp(atIndex, 0, listedPages())), page);
}

void PDFDocument::removePageAtIndex(int index) {
    if (index >= 0 && index < listedPages()) pages_.remove(static_cast<std::size_t>(index));
}

void PDFDocument::exchangePageAtIndex(int index, int withPageAtIndex) {
    const auto inside = [this](int i) { return i >= 0 && i < listedPages(); };
    if (!inside(index) || !inside(withPageAtIndex)) return;
    pages_.exchange(static_cast<std::size_t>(index), static_cast<std::size_t>(withPageAtIndex));
}

std::shared_ptr<PDFOutline> PDFDocument::outlineRoot() {
    if (!outlineRead_ && !outlineReplaced_ && source_ && !isLocked()) {
        outlineRead_ = true;
        outlineRoot_ = readOutline();
    }
    return outlineRoot_;
}

std::shared_ptr<PDFOutline> PDFDocument::readOutline() {
    std::unordered_map<std::uint32_t, std::shared_ptr<PDFPage>> own;  // by place in the file
    const auto pageAt = [&](std::uint32_t place) {
        if (own.empty()) {
            for (std::size_t i = 0; i < pages_.size(); ++i) {
                const auto& page = pages_.at(i);
                if (page->source_ && page->source_->source == source_ && page->source_->opening == opening_)
                    own.try_emplace(page->source_->index, page);
            }
        }
        auto& page = own[place];
        if (!page) page = makePage(place);  // one that was removed, and may stand in another document
        return page;
    };
    return readOutlineTree(source_, opening_, pageAt);
}

/// The outline with the places of its pages in this document.
std::vector<pdf::OutlineEntry> PDFDocument::outline() {
    if (!outlineRoot_) return {};
    std::unordered_map<const PDFPage*, std::size_t> places;
    std::map<std::tuple<const pdf::Source*, std::uint32_t, std::uint32_t>, std::size_t> origins;
    const auto originOf = [](const PDFPage& page) {
        return std::tuple(page.source_->source.get(), page.source_->opening, page.source_->index);
    };
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const PDFPage& page = *pages_.at(i);
        places.try_emplace(&page, i);
        if (page.source_) origins.try_emplace(originOf(page), i);
    }
    return outlineEntries(*outlineRoot_, [&](const PDFPage& page) -> std::optional<std::size_t> {
        if (const auto place = places.find(&page); place != places.end()) return place->second;
        if (!page.source_) return std::nullopt;
        const auto origin = origins.find(originOf(page));
        return origin == origins.end() ? std::nullopt : std::optional(origin->second);
    });
}

void PDFDocument::setOutlineRoot(std::shared_ptr<PDFOutline> root) {
    outlineRoot_ = std::move(root);
    outlineReplaced_ = true;
}

QVariantMap PDFDocument::documentAttributes() const {
    QVariantMap attributes;
    if (!source_ || isLocked()) return attributes;
    const pdf::SourceAccess access(*source_);
    if (!access.document()) return attributes;
    pdf::ObjectReader& reader = access.document()->reader();
    const pdf::Object information = reader.resolve(reader.trailer()["Info"]);
    if (!information.dictionary()) return attributes;
    for (const QString& key : {PDFDocumentTitleAttribute, PDFDocumentAuthorAttribute, PDFDocumentSubjectAttribute,
                               PDFDocumentKeywordsAttribute, PDFDocumentCreatorAttribute}) {
        const pdf::Object value = reader.resolve((*information.dictionary())[key.toStdString()]);
        if (!value.string()) continue;
        const QString text = fromTextString(*value.string());
        attributes[key] = key == PDFDocumentKeywordsAttribute ? QVariant(QStringList{text}) : QVariant(text);
    }
    return attributes;
}

bool PDFDocument::writeToURL(const QUrl& url, const QVariantMap& withOptions) {
    writeWarnings_.clear();
    const std::string path = filePathOf(url);
    if (path.empty()) return false;
    pdf::SourceHolds holds;
    if (source_) holds.use(source_);
    pdf::DocumentPlan plan = paint();
    plan.base = isLocked() ? nullptr : source_;
    // One that was read may have been changed, and is written as it is now.
    plan.keepOutline = !outlineReplaced_ && !outlineRoot_;
    plan.outline = outline();
    plan.information = informationFrom(withOptions);
    plan.metadata = metadata(withOptions);
    plan.protection = protectionFrom(withOptions);
    plan.sync = !withOptions.value(kWriteWithoutSync).toBool();
    pdf::WriteResult result = pdf::writeDocument(plan, path);
    writeWarnings_ = std::move(result.warnings);
    if (result.written) writtenPageCount_ = static_cast<int>(result.pages);
    return result.written;
}

/// The XMP metadata that say what the document information will say; empty when there are none so far and nothing is to
/// be said.
std::string PDFDocument::metadata(const QVariantMap& withOptions) const {
    const QVariantMap attributes = documentAttributes();
    bool anything = false;
    const auto textOf = [&](const QString& attribute, const QString& option) {
        const QVariant own = attributes.value(attribute);
        QString text = own.typeId() == QMetaType::QStringList ? own.toStringList().join(QString()) : own.toString();
        if (withOptions.contains(option)) text = withOptions.value(option).toString();
        anything = anything || !text.isEmpty();
        return text.isEmpty() ? QString() : text;
    };
    DocumentInformation information;
    information.title = textOf(PDFDocumentTitleAttribute, kCGPDFContextTitle);
    information.author = textOf(PDFDocumentAuthorAttribute, kCGPDFContextAuthor);
    information.subject = textOf(PDFDocumentSubjectAttribute, kCGPDFContextSubject);
    information.keywords = textOf(PDFDocumentKeywordsAttribute, kCGPDFContextKeywords);
    information.creator = textOf(PDFDocumentCreatorAttribute, kCGPDFContextCreator);
    information.producer = QString::fromLatin1(pdf::producer);
    information.keywordsReplaced =
        withOptions.contains(kCGPDFContextKeywords) &&
        attributes.value(PDFDocumentKeywordsAttribute).toStringList().join(QString()) != information.keywords;
    QByteArray existing;
    if (source_ && !isLocked()) {
        const pdf::SourceAccess access(*source_);
        if (access.document()) existing = readMetadata(*access.document(), information);
    }
    return anything || !existing.isEmpty() ? information.metadata(existing) : std::string();
}

/// Whatever is painted over the page, its content must be looked at: that can begin while the next pages are drawn.
void PDFDocument::announceContent(const pdf::SourcePage& page, pdf::ContentScout& scout) {
    const pdf::SourceAccess access(*page.source);
    pdf::SourceDocument* document = access.document();
    if (!document || page.index >= document->pages().pages().size()) return;
    scout.expect(*document, document->pages().pages()[page.index]);
}

/// Lets every page draw itself, in order, and notes what is to be written for it.
pdf::DocumentPlan PDFDocument::paint() {
    pdf::DocumentPlan plan;
    plan.pages.reserve(pages_.size());
    plan.scout = std::make_shared<pdf::ContentScout>();
    std::any store;
    MarkPainter painter;
    pdf::SourceHolds holds;
    for (std::size_t index = 0; index < pages_.size(); ++index) {
        PDFPage& page = *pages_.at(index);
        if (page.source_) holds.use(page.source_->source);
        DrawingContext context(page, store);
        page.drawWithBox(PDFDisplayBox::MediaBox);
        auto marks = context.takeMarks();
        pdf::OutputPage output;
        output.withContent = context.contentDrawn();
        if (page.source_ && output.withContent && !marks.empty()) announceContent(*page.source_, *plan.scout);
        painter.add(std::move(marks));
        if (page.source_) {
            output.origin = *page.source_;
        } else if (page.image_) {
            output.origin = std::shared_ptr<const pdf::PageProducer>(page.image_);
        } else {
            output.origin = std::make_shared<const pdf::BlankPage>(blankPageAt(index));
        }
        plan.pages.push_back(std::move(output));
    }
    auto paintings = painter.paintings();
    for (std::size_t index = 0; index < paintings.size(); ++index) {
        plan.pages[index].painting = std::move(paintings[index]);
    }
    return plan;
}

/// A blank page looks like the page before it, and blank pages in a row like the one before them all.
pdf::BlankPage PDFDocument::blankPageAt(std::size_t index) {
    while (index > 0) {
        const PDFPage& before = *pages_.at(--index);
        if (!before.source_ && !before.image_) continue;
        const QRectF box = before.boundsForBox(PDFDisplayBox::MediaBox);
        return {{box.left(), box.top(), box.right(), box.bottom()}, before.rotation()};
    }
    return {};
}

std::vector<std::string> PDFDocument::warnings() const {
    std::vector<std::string> all = source_ ? source_->warnings() : std::vector<std::string>();
    for (const std::string& line : writeWarnings_) {
        if (std::ranges::find(all, line) == all.end()) all.push_back(line);
    }
    return all;
}

}  // namespace quillon
