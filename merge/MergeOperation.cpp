#include "merge/MergeOperation.h"

#include "decoration/MyPdfDocument.h"
#include "decoration/Utility.h"
#include "decoration/WaterMark.h"
#include "merge/LeadingInteger.h"
#include "merge/MergeOwner.h"
#include "merge/MergeSettings.h"
#include "merge/RangeResolver.h"
#include "merge/cacheData.h"
#include "platform/AssertionFailure.h"
#include "platform/ToolkitVersion.h"
#include "platform/image/Image.h"
#include "platform/jobs/MainThread.h"
#include "platform/pdf/DocumentAttributes.h"
#include "platform/pdf/DocumentPreloader.h"
#include "platform/pdf/PDFDestination.h"
#include "platform/pdf/PDFOutline.h"
#include "platform/pdf/WriteOptions.h"

#include <QRectF>

#include <algorithm>
#include <limits>
#include <utility>

namespace quillon {
namespace {

/// A document that could not be opened or unlocked counts as one without pages.
int pageCountOf(const std::shared_ptr<MyPdfDocument>& document) {
    return document && !document->isLocked() ? document->pageCount() : 0;
}

/// Null outside the document. The index is wide because steps are multiplied by rounds.
std::shared_ptr<PDFPage> pageOf(const std::shared_ptr<MyPdfDocument>& document, std::int64_t index) {
    if (!document || index < 0 || index > std::numeric_limits<int>::max()) return nullptr;
    return document->pageAtIndex(static_cast<int>(index));
}

std::shared_ptr<PDFOutline> outlineOf(const std::shared_ptr<MyPdfDocument>& document) {
    return document ? document->outlineRoot() : nullptr;
}

/// Null when the attribute is missing.
QString textOf(const QVariantMap& attributes, const QString& key) {
    return attributes.value(key).toString();
}

std::optional<QStringList> listOf(const QVariantMap& attributes, const QString& key) {
    const auto at = attributes.constFind(key);
    if (at == attributes.constEnd()) return std::nullopt;
    return at->toStringList();
}

QString withoutExtension(const QString& name) {
    const auto dot = name.lastIndexOf(QLatin1Char('.'));
    // A dot in front begins a name, not an ending.
    return dot > 0 ? name.left(dot) : name;
}

/// The pages that a step takes from a document that is not empty, starting at the first or, in reverse, at the last
/// page. A step that leads nowhere takes that page alone.
struct Selection {
    std::int64_t pageCount;
    std::int64_t step;
    bool isReverse;

    [[nodiscard]] std::int64_t size() const { return step > 0 ? (pageCount + step - 1) / step : 1; }
    /// The index of the n-th of them, counted from the front of the document.
    [[nodiscard]] std::int64_t index(std::int64_t n) const {
        return isReverse ? pageCount - 1 - (size() - 1 - n) * step : n * step;
    }
};

}  // namespace

/// The entry that the rounds of an interleaving start with.
struct MergeOperation::Leader {
    std::shared_ptr<MyPdfDocument> document;
    std::int64_t pageCount;
    std::int64_t step;
    bool isReverse;

    [[nodiscard]] bool hasPage(std::int64_t round) const { return round * step < pageCount; }
    [[nodiscard]] std::shared_ptr<PDFPage> page(std::int64_t round) const {
        const std::int64_t k = round * step;
        return pageOf(document, isReverse ? pageCount - 1 - k : k);
    }
};

MergeOperation::MergeOperation(const std::vector<std::shared_ptr<cacheData>>& cache, const QUrl& targetUrl,
                               MergeSettings& Setting, MergeOwner& owner)
    : cache_(cache), setting_(Setting), owner_(owner), targetURL_(targetUrl) {}

MergeOperation::~MergeOperation() = default;

void MergeOperation::main() {
    if (isCancelled()) return;
    runOnMainThread(&MergeOperation::progressStart, true);
    collectPages();
    registerAttributes();
    runOnMainThread(&MergeOperation::refreshSettings, true);
    writeOutput();
    runOnMainThread(&MergeOperation::progressFinish, false);
}

void MergeOperation::collectPages() {
    DocumentPreloader preloader(
        cache_.size(), [this](std::size_t index) { return cache_[index]->isImage() ? QUrl() : cache_[index]->url(); });
    std::size_t i = 0;
    while (i < cache_.size() && !isCancelled()) {
        preloader.reached(i);
        const cacheData& entry = *cache_[i];
        ++i;
        switch (entry.mergeMethod()) {
            case MergeMethodWhole:
            case MergeMethodRepeat:
                handleWhole(entry);
                break;
            case MergeMethodPart:
                handlePart(entry);
                break;
            case MergeMethodCross:
            case MergeMethodCrossReverse:
                i = collectFollowers(i);
                handleMix(entry);
                break;
            default:
                assertionFailure("-[MergeOperation main]", "MergeOperation", 777, "NO");
        }
    }
}

/// Puts the entries from `first` up to the next Whole or Part entry on the stack. Returns the index behind them.
std::size_t MergeOperation::collectFollowers(std::size_t first) {
    std::size_t j = first;
    for (; j < cache_.size(); ++j) {
        const auto method = cache_[j]->mergeMethod();
        if (method == MergeMethodWhole || method == MergeMethodPart) break;
        cacheStack_.push(cache_[j]);
    }
    return j;
}

void MergeOperation::registerAttributes() {
    const QVariantMap attributes = pdfDocument_ ? pdfDocument_->documentAttributes() : QVariantMap();
    setting_.registerTitle(textOf(attributes, PDFDocumentTitleAttribute));
    setting_.registerAuthor(textOf(attributes, PDFDocumentAuthorAttribute));
    setting_.registerSubject(textOf(attributes, PDFDocumentSubjectAttribute));
    setting_.registerKeywords(listOf(attributes, PDFDocumentKeywordsAttribute));
    setting_.registerCreator(textOf(attributes, PDFDocumentCreatorAttribute));
}

void MergeOperation::writeOutput() {
    const QVariantMap attributes = outputAttr().value_or(QVariantMap());
    if constexpr (toolkitVersion >= 1038.0) {
        const bool written = pdfDocument_ && pdfDocument_->writeToURL(targetURL(), attributes);
        writtenPages_ = written ? pdfDocument_->writtenPageCount() : 0;
        if (pdfDocument_) warnings_.add(pdfDocument_->warnings());
    } else {
        writePDF(pdfDocument_, attributes);
    }
}

/// The job stays alive until the operation has run, even when its queue has let go of it.
void MergeOperation::runOnMainThread(void (MergeOperation::*operation)(), bool waitUntilDone) {
    MainThread::performOnMainThread([this, operation, self = weak_from_this().lock()] { (this->*operation)(); },
                                    waitUntilDone);
}

void MergeOperation::progressStart() {
    owner_.startHandling();
}

void MergeOperation::progressFinish() {
    owner_.stopHandling();
}

void MergeOperation::handleWhole(const cacheData& entry) {
    if (entry.isImage()) {
        handleImage(entry);
        return;
    }
    if (!pdfDocument_) {
        pdfDocument_ = openInput(entry);
        // Of a locked document there is nothing to start from, not even its pages, which it counts all the same.
        if (pdfDocument_ && pdfDocument_->isLocked()) pdfDocument_ = std::make_shared<MyPdfDocument>();
        addOutline(pdfDocument_, entry);
        return;
    }
    const bool isRepeat = entry.mergeMethod() == MergeMethodRepeat;
    if (!isRepeat) addPage();
    const auto source = openInput(entry);
    int position = outputPageCount();
    const int count = pageCountOf(source);
    for (int k = 0; k < count && !isCancelled(); ++k) pdfDocument_->insertPage(source->pageAtIndex(k), position++);
    if (!isRepeat) addOutline(source, entry);
}

void MergeOperation::handleImage(const cacheData& entry) {
    makeOutput();
    const auto image = Image::initWithContentsOfURL(entry.url());
    if (!image) warnings_.noteUnreadablePicture(entry);
    pdfDocument_->insertPage(WaterMark::initWithImage(image), outputPageCount());
}

void MergeOperation::handlePart(const cacheData& entry) {
    if (pdfDocument_) addPage();
    makeOutput();
    int position = outputPageCount();
    const auto source = openInput(entry);
    RangeResolver resolver(entry.value(), pageCountOf(source));
    while (resolver.next() && !isCancelled()) {
        if (resolver.isRange()) {
            const auto end = resolver.getEnd();
            for (auto q = resolver.getStart(); q <= end; ++q) pdfDocument_->insertPage(pageOf(source, q), position++);
        } else {
            pdfDocument_->insertPage(pageOf(source, resolver.getValue()), position++);
        }
    }
}

void MergeOperation::handleMix(const cacheData& entry) {
    makeOutput();
    addPage();
    const bool isReverse = entry.mergeMethod() == MergeMethodCrossReverse;
    const auto document = openInput(entry);
    if (cacheStack_.isEmpty()) {
        preHandleForMix(document, entry, isReverse);
        insertPdf(document, outputPageCount());
        return;
    }
    const Leader leader{document, pageCountOf(document), leadingInteger(entry.value()), isReverse};
    std::int64_t round = 0;
    while (!cacheStack_.isEmpty() && !isCancelled()) takeRound(leader, round++);
    takeRestOfLeader(leader, round);
    cacheStack_.removeAll();
}

void MergeOperation::takeRound(const Leader& leader, std::int64_t round) {
    int position = outputPageCount();
    // Carried from each entry of the round to the one behind it: a Repeat entry leaves with the entry in front of it.
    bool exhausted = !takeLeaderPage(leader, round, position);
    for (const auto& follower : cacheStack_.getBackup()) {
        switch (follower->mergeMethod()) {
            case MergeMethodCross:
            case MergeMethodCrossReverse:
                exhausted = !takeFollowerPage(*follower, round, position);
                break;
            case MergeMethodRepeat:
                if (!exhausted) handleWhole(*follower);
                break;
            default:
                assertionFailure("-[MergeOperation handleMix:]", "MergeOperation", 608, "NO");
        }
    }
    // Only the last entry can leave in a round. Another one that has run out stays, and keeps setting the mark for the
    // entry behind it, so that the entries leave from the back.
    if (exhausted) cacheStack_.getBackup().pop_back();
}

bool MergeOperation::takeLeaderPage(const Leader& leader, std::int64_t round, int& position) {
    if (!leader.hasPage(round)) return false;
    pdfDocument_->insertPage(leader.page(round), position++);
    return true;
}

/// The document is opened anew in every round, so that only one follower is in memory at a time.
bool MergeOperation::takeFollowerPage(const cacheData& follower, std::int64_t round, int& position) {
    const auto document = openInput(follower);
    const std::int64_t count = pageCountOf(document);
    std::int64_t index = round * leadingInteger(follower.value());
    if (follower.mergeMethod() == MergeMethodCrossReverse) {
        index = count - 1 - index;
        if (index < 0) return false;
    } else if (index >= count) {
        return false;
    }
    pdfDocument_->insertPage(pageOf(document, index), position++);
    return true;
}

/// Does not look for a cancellation: whoever stops the job still gets the leader's remaining pages.
void MergeOperation::takeRestOfLeader(const Leader& leader, std::int64_t round) {
    // A step that leads nowhere has no remaining pages, and would never come to their end.
    if (leader.step <= 0) return;
    for (; leader.hasPage(round); ++round) pdfDocument_->insertPage(leader.page(round), outputPageCount());
}

void MergeOperation::preHandleForMix(const std::shared_ptr<MyPdfDocument>& document, const cacheData& data,
                                     bool isReverse) {
    const int count = pageCountOf(document);
    if (count == 0) return;
    const Selection selection{count, leadingInteger(data.value()), isReverse};
    const int kept = static_cast<int>(selection.size());
    // Gathering the kept pages in front before the others go from the back keeps this linear; removing each of the
    // others from where it stands would move all pages behind it every time.
    for (int n = 0; n < kept; ++n) document->exchangePageAtIndex(n, static_cast<int>(selection.index(n)));
    for (int i = count - 1; i >= kept; --i) document->removePageAtIndex(i);
    if (!isReverse) return;
    for (int i = 0; i < kept / 2; ++i) document->exchangePageAtIndex(i, kept - 1 - i);
}

void MergeOperation::insertPdf(const std::shared_ptr<MyPdfDocument>& document, int AtIndex) {
    makeOutput();
    const int count = pageCountOf(document);
    const int start = std::clamp(AtIndex, 0, outputPageCount());
    for (int i = 0; i < count; ++i) pdfDocument_->insertPage(document->pageAtIndex(i), start + i);
}

void MergeOperation::decrypt(const std::shared_ptr<MyPdfDocument>& document, const cacheData& data) {
    if (document && data.needPassword() != 0) document->unlockWithPassword(data.password());
}

void MergeOperation::addPage() {
    if (!setting_.isAddPage()) return;
    const int count = outputPageCount();
    if (count % 2 == 0) return;
    if (setting_.isAddBlankPage()) {
        pdfDocument_->insertPage(std::make_shared<WaterMark>(), count);
        return;
    }
    const QUrl url = setting_.addedPageUrl();
    const auto document = PDFDocument::initWithURL(url);
    warnings_.noteFile(url, document.get());
    if (document) pdfDocument_->insertPage(document->pageAtIndex(0), count);
}

void MergeOperation::makeOutput() {
    if (!pdfDocument_) pdfDocument_ = std::make_shared<MyPdfDocument>();
}

/// Null when the file cannot be read as a PDF.
std::shared_ptr<MyPdfDocument> MergeOperation::openInput(const cacheData& entry) {
    auto document = MyPdfDocument::initWithURL(entry.url());
    decrypt(document, entry);
    if (document && document->isLocked()) locked_[&entry] = document;
    warnings_.noteInput(entry, document.get());
    return document;
}

int MergeOperation::outputPageCount() const {
    return pageCountOf(pdfDocument_);
}

QString MergeOperation::getFileName(const QUrl& url) const {
    const QString text = url.toString(QUrl::FullyEncoded | QUrl::StripTrailingSlash);
    const QString name = text.mid(text.lastIndexOf(QLatin1Char('/')) + 1);
    return setting_.isRemoveExtension() ? withoutExtension(name) : name;
}

std::shared_ptr<PDFOutline> MergeOperation::getOutline(const QString& label,
                                                       const std::shared_ptr<PDFPage>& page) const {
    const double height = page ? page->boundsForBox(PDFDisplayBox::MediaBox).height() : 0.0;
    auto node = std::make_shared<PDFOutline>();
    node->setLabel(label);
    node->setDestination(std::make_shared<PDFDestination>(page, QPointF(0.0, height)));
    return node;
}

void MergeOperation::addOutline(const std::shared_ptr<MyPdfDocument>& document, const cacheData& cacheData) {
    if (!setting_.isAddBookmark()) return;
    const auto ownOutline = outlineOf(document);
    if (!outlineRoot() && !makeOutlineRoot(ownOutline)) return;

    std::shared_ptr<PDFOutline> node;
    if (setting_.isKeepOriginalBookmark() && ownOutline) {
        node = ownOutline;
        node->setLabel(getFileName(cacheData.url()));
    } else if (setting_.isUseFileName()) {
        node = getOutline(getFileName(cacheData.url()), pageOf(document, 0));
    } else {
        return;
    }
    const auto root = outlineRoot();
    root->insertChild(node, root->numberOfChildren());
    if (pdfDocument_) pdfDocument_->setOutlineRoot(root);
}

/// False when nothing is left to add: the document's own outline has become the root, or no bookmark is wanted.
bool MergeOperation::makeOutlineRoot(const std::shared_ptr<PDFOutline>& ownOutline) {
    if (ownOutline && setting_.isKeepOriginalBookmark()) {
        setOutlineRoot(ownOutline);
        return false;
    }
    if (!setting_.isUseFileName()) return false;
    setOutlineRoot(std::make_shared<PDFOutline>());
    return true;
}

void MergeOperation::refreshSettings() {
    if (!outputAttr()) setOutputAttr(QVariantMap());
    refreshInformation();
    refreshProtection();
    refreshDecoration();
    if (setting_.isAddBookmark() && pdfDocument_) pdfDocument_->setOutlineRoot(outlineRoot());
}

void MergeOperation::refreshInformation() {
    setSetting(setting_.resolveKeywords(), kCGPDFContextKeywords);
    setSetting(setting_.resolveSubject(), kCGPDFContextSubject);
    setSetting(setting_.resolveAuthor(), kCGPDFContextAuthor);
    setSetting(setting_.resolveTitle(), kCGPDFContextTitle);
    setSetting(setting_.resolveCreator(), kCGPDFContextCreator);
}

void MergeOperation::refreshProtection() {
    if (setting_.isUserEncrypt()) {
        setSetting(setting_.userEncryptPassword(), kCGPDFContextUserPassword);
        // A file never carries a user password without an owner password.
        if (!setting_.isOwnerEncrypt()) setSetting(setting_.userEncryptPassword(), kCGPDFContextOwnerPassword);
    }
    if (setting_.isOwnerEncrypt()) {
        setSetting(setting_.ownerEncryptPassword(), kCGPDFContextOwnerPassword);
        if (!setting_.isCopyAllowed()) setSetting(false, kCGPDFContextAllowsCopying);
        if (!setting_.isPrintAllowed()) setSetting(false, kCGPDFContextAllowsPrinting);
    }
}

void MergeOperation::refreshDecoration() {
    if (setting_.isAddWaterMark()) {
        Utility::setShouldAddWaterMark();
        Utility::setWatermarkContent(setting_.getWaterMarkContent());
    } else {
        Utility::resetShouldAddwaterMark();
    }
    if (setting_.isAddPageNumber()) {
        Utility::setPageNUmberPosition(static_cast<std::uint32_t>(setting_.pageNumberPosition()));
        Utility::setPageNumberPrefixString(setting_.getNextPageNumberPrefixString());
        Utility::setPageNumberStringAttri(setting_.getStringAttr());
        Utility::setPageNumberBegin(setting_.getPageNumberBegin(), setting_.getPageNumberOffset());
    }
    // Also when off, since an earlier merge may have left them on.
    Utility::setShouldaddPageNumber(setting_.isAddPageNumber());
}

void MergeOperation::setSetting(const QVariant& value, const QString& forKey) {
    const bool isNullText = value.metaType() == QMetaType::fromType<QString>() && value.toString().isNull();
    if (!value.isValid() || isNullText || forKey.isNull()) return;
    const std::lock_guard lock(propertyMutex_);
    if (outputAttr_) outputAttr_->insert(forKey, value);
}

void MergeOperation::writePDF(const std::shared_ptr<MyPdfDocument>& document, const QVariantMap& attr) {
    PDFDocument plain;
    const int count = pageCountOf(document);
    for (int i = 0; i < count; ++i) plain.insertPage(document->pageAtIndex(i), i);
    writtenPages_ = plain.writeToURL(targetURL(), attr) ? plain.writtenPageCount() : 0;
    warnings_.add(plain.warnings());
}

QUrl MergeOperation::targetURL() const {
    const std::lock_guard lock(propertyMutex_);
    return targetURL_;
}

void MergeOperation::setTargetURL(const QUrl& url) {
    const std::lock_guard lock(propertyMutex_);
    targetURL_ = url;
}

std::shared_ptr<PDFOutline> MergeOperation::outlineRoot() const {
    const std::lock_guard lock(propertyMutex_);
    return outlineRoot_;
}

void MergeOperation::setOutlineRoot(std::shared_ptr<PDFOutline> root) {
    const std::lock_guard lock(propertyMutex_);
    outlineRoot_ = std::move(root);
}

std::optional<QVariantMap> MergeOperation::outputAttr() const {
    const std::lock_guard lock(propertyMutex_);
    return outputAttr_;
}

void MergeOperation::setOutputAttr(std::optional<QVariantMap> attributes) {
    const std::lock_guard lock(propertyMutex_);
    outputAttr_ = std::move(attributes);
}

}  // namespace quillon
