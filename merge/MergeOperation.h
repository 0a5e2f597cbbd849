#pragma once

#include "merge/MergeWarnings.h"
#include "merge/Stack.h"
#include "platform/jobs/Operation.h"

#include <QString>
#include <QUrl>
#include <QVariant>
#include <QVariantMap>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

class MergeOwner;
class MergeSettings;
class MyPdfDocument;
class PDFDocument;
class PDFOutline;
class PDFPage;
class cacheData;

/// One merge: walks the list, collects the pages of the output, turns the settings into write options and writes the
/// file.
///
/// Made on the main thread, queued once and run once. Everything but the progress calls and refreshSettings runs on the
/// queue's thread; the operations that `main` is made of are public only so that each can be used and tested alone.
/// Nothing is reported while it runs: an input that cannot be read contributes no pages, and a target that cannot be
/// written stays as it was. See warnings and written.
class MergeOperation final : public Operation {
public:
    /// Keeps references to the list, the settings and the owner, which must outlive the job; list and entries must stay
    /// unchanged until it has finished.
    MergeOperation(const std::vector<std::shared_ptr<cacheData>>& cache, const QUrl& targetUrl, MergeSettings& Setting,
                   MergeOwner& owner);
    ~MergeOperation() override;

    /// A job that was cancelled before does nothing at all. One that is cancelled on the way still writes the pages
    /// that it has collected and reports its end. Stops the program on an entry with an unknown merge method.
    void main() override;

    /// Each appends the pages of an entry to the output. The first whole PDF becomes the output itself.
    void handleWhole(const cacheData& entry);
    void handleImage(const cacheData& entry);
    void handlePart(const cacheData& entry);
    /// Weaves the entry with those that are on the stack, and empties the stack.
    void handleMix(const cacheData& entry);

    /// Thins the document down to the pages that a Cross entry without followers contributes, in the order of the
    /// output.
    void preHandleForMix(const std::shared_ptr<MyPdfDocument>& document, const cacheData& data, bool isReverse);
    /// Inserts all pages of the document into the output, in their order.
    void insertPdf(const std::shared_ptr<MyPdfDocument>& document, int AtIndex);

    /// Unlocks the document with the entry's password unless it is known to need none. Whether that works is not looked
    /// at.
    void decrypt(const std::shared_ptr<MyPdfDocument>& document, const cacheData& data);
    /// Pads the output to an even page count if the settings ask for it.
    void addPage();

    void progressStart();
    void progressFinish();

    /// The name of the file as it stands in the URL, that is with a blank as `%20`; without its ending if the settings
    /// ask for it.
    [[nodiscard]] QString getFileName(const QUrl& url) const;
    /// A node that leads to the top of the page; with no page, to the point (0, 0) of none.
    [[nodiscard]] std::shared_ptr<PDFOutline> getOutline(const QString& label,
                                                         const std::shared_ptr<PDFPage>& page) const;
    /// Adds the document's own outline, or a node that is named after the file, to the outline of the output. Null
    /// stands for an input that could not be opened: it has no outline of its own and no first page.
    void addOutline(const std::shared_ptr<MyPdfDocument>& document, const cacheData& cacheData);

    /// Turns the settings into outputAttr, the decoration of the pages and the outline of the output. Main thread only.
    void refreshSettings();
    /// Stores the value in outputAttr. Nothing happens when value (an invalid variant or a null string), key or
    /// outputAttr is absent.
    void setSetting(const QVariant& value, const QString& forKey);
    /// Writes a plain document that shares the pages of `document`, to targetURL; null stands for no pages. This is how
    /// platforms before version 1038.0 write.
    void writePDF(const std::shared_ptr<MyPdfDocument>& document, const QVariantMap& attr);

    /// These properties may be read and set from any thread.
    [[nodiscard]] QUrl targetURL() const;
    void setTargetURL(const QUrl& url);
    /// The root of the bookmarks that were collected; null until there are any.
    [[nodiscard]] std::shared_ptr<PDFOutline> outlineRoot() const;
    void setOutlineRoot(std::shared_ptr<PDFOutline> root);
    /// What goes with the write, under the keys of WriteOptions.h; absent until refreshSettings makes it. Entries that
    /// are set before the job runs stay unless a setting replaces them.
    [[nodiscard]] std::optional<QVariantMap> outputAttr() const;
    void setOutputAttr(std::optional<QVariantMap> attributes);

    /// For use after main has returned: what was damaged or missing in the inputs and in the last write, one line each,
    /// every file once; and whether the last write succeeded.
    [[nodiscard]] const std::vector<std::string>& warnings() const noexcept { return warnings_.lines(); }
    [[nodiscard]] bool written() const noexcept { return writtenPages_ > 0; }
    /// The pages of the file that was written, 0 when none was. Readable as `written`.
    [[nodiscard]] int writtenPages() const noexcept { return writtenPages_; }

private:
    struct Leader;

    void collectPages();
    [[nodiscard]] std::size_t collectFollowers(std::size_t first);
    void registerAttributes();
    void writeOutput();
    void runOnMainThread(void (MergeOperation::*operation)(), bool waitUntilDone);

    void makeOutput();
    [[nodiscard]] std::shared_ptr<MyPdfDocument> openInput(const cacheData& entry);
    [[nodiscard]] int outputPageCount() const;

    void takeRound(const Leader& leader, std::int64_t round);
    [[nodiscard]] bool takeLeaderPage(const Leader& leader, std::int64_t round, int& position);
    [[nodiscard]] bool takeFollowerPage(const cacheData& follower, std::int64_t round, int& position);
    void takeRestOfLeader(const Leader& leader, std::int64_t round);

    [[nodiscard]] bool makeOutlineRoot(const std::shared_ptr<PDFOutline>& ownOutline);
    void refreshInformation();
    void refreshProtection();
    void refreshDecoration();

    const std::vector<std::shared_ptr<cacheData>>& cache_;
    Stack cacheStack_;
    std::shared_ptr<MyPdfDocument> pdfDocument_;  // the output; null until the first entry that opens
    MergeSettings& setting_;
    MergeOwner& owner_;
    // Documents that their passwords did not unlock. Held, since a weave tries them anew in every round, and only while
    // one lives does its file remember what its passwords came to, which takes long to find out.
    std::map<const cacheData*, std::shared_ptr<MyPdfDocument>> locked_;
    MergeWarnings warnings_;
    int writtenPages_ = 0;

    mutable std::mutex propertyMutex_;  // guards the three properties
    QUrl targetURL_;
    std::shared_ptr<PDFOutline> outlineRoot_;
    std::optional<QVariantMap> outputAttr_;
};

}  // namespace quillon
