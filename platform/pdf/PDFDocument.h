#pragma once

#include "pdf/write/DocumentWriter.h"
#include "platform/pdf/PDFPage.h"
#include "platform/pdf/PageList.h"

#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

class PDFOutline;

/// An ordered list of pages with an outline and document attributes: a file that was opened, or a document under
/// construction. Pages are shared handles, so inserting, removing and exchanging them are list edits that read nothing.
/// Not thread-safe: one document is used by one thread at a time. Different documents may be used side by side.
class PDFDocument {
public:
    using PageFactory = std::shared_ptr<PDFPage> (*)();

    /// An empty document.
    PDFDocument();
    PDFDocument(const PDFDocument&) = delete;
    PDFDocument& operator=(const PDFDocument&) = delete;
    virtual ~PDFDocument();

    /// Opens a file. Null when it cannot be read as a PDF. A protected file opens locked.
    [[nodiscard]] static std::shared_ptr<PDFDocument> initWithURL(const QUrl& url);

    /// Makes the pages of this document; a subclass returns the maker of its own page class.
    [[nodiscard]] virtual PageFactory pageClass() const;

    [[nodiscard]] bool isEncrypted() const;
    /// Whether a password is needed to read the document. One that opens with the empty password is encrypted and not
    /// locked.
    [[nodiscard]] bool isLocked() const;
    /// Whether the author of the document lets its text and pictures be copied; true for whoever has given the owner's
    /// password, and for a document that is not encrypted. False while it is locked.
    [[nodiscard]] bool allowsCopying() const;
    /// The same for printing.
    [[nodiscard]] bool allowsPrinting() const;
    /// Whether `password` is the user's or the owner's, which then opens the document; true for a document that is not
    /// encrypted. A wrong password takes nothing away. An absent password is a null string and opens nothing, unlike an
    /// empty one. A document that was locked gets its pages, in place of any that were inserted before. The password of
    /// an unlocked file is not checked anew as long as any of its pages or documents lives.
    bool unlockWithPassword(const QString& password);

    /// While the document is locked, the number of pages that it will have, as far as that can be told without the
    /// password, otherwise 0.
    [[nodiscard]] int pageCount() const;
    /// Null outside 0 … pageCount() - 1, and while the document is locked. The same page object at every call.
    [[nodiscard]] std::shared_ptr<PDFPage> pageAtIndex(int index);
    /// The first index at which the page stands, -1 if nowhere.
    [[nodiscard]] int indexForPage(const std::shared_ptr<PDFPage>& page);
    /// Inserts a page, possibly one of another document, in front of the page at `atIndex`; an index past the end means
    /// the end, a negative one the front. No page (null): nothing happens.
    void insertPage(const std::shared_ptr<PDFPage>& page, int atIndex);
    /// Nothing happens outside 0 … pageCount() - 1.
    void removePageAtIndex(int index);
    /// Nothing happens unless both indexes are inside.
    void exchangePageAtIndex(int index, int withPageAtIndex);

    /// The root of the outline, whose children are the top level; of a file it is read when it is first asked for. Null
    /// when there is none, and of a file that is locked.
    [[nodiscard]] std::shared_ptr<PDFOutline> outlineRoot();
    /// Null removes the outline.
    void setOutlineRoot(std::shared_ptr<PDFOutline> root);

    /// The document information under the keys of DocumentAttributes.h; texts, for the keywords a list of one text. A
    /// missing entry has no key.
    [[nodiscard]] QVariantMap documentAttributes() const;

    /// Draws and writes every page, whole file or none: on failure what stood at `url` stays as it was. `withOptions`
    /// is keyed by the keys of WriteOptions.h. False when there is no page or the target cannot be written.
    bool writeToURL(const QUrl& url, const QVariantMap& withOptions);

    /// The number of pages of the last successful write, 0 before it.
    [[nodiscard]] int writtenPageCount() const noexcept { return writtenPageCount_; }

    /// What was damaged, left out or replaced, in the file that was opened and in the last write: a line each that
    /// names file, object and offset.
    [[nodiscard]] std::vector<std::string> warnings() const;

protected:
    /// Reads the file for a factory of a subclass. False when it cannot be read as a PDF.
    [[nodiscard]] bool open(const QUrl& url);

private:
    [[nodiscard]] bool permits(unsigned bit) const;
    void takePages();
    [[nodiscard]] int listedPages() const;
    [[nodiscard]] std::shared_ptr<PDFPage> makePage(std::size_t index) const;
    static void announceContent(const pdf::SourcePage& page, pdf::ContentScout& scout);
    [[nodiscard]] pdf::DocumentPlan paint();
    [[nodiscard]] std::string metadata(const QVariantMap& withOptions) const;
    [[nodiscard]] pdf::BlankPage blankPageAt(std::size_t index);
    [[nodiscard]] std::shared_ptr<PDFOutline> readOutline();
    [[nodiscard]] std::vector<pdf::OutlineEntry> outline();

    std::shared_ptr<pdf::Source> source_;      // null for a document that was made empty
    pdf::Access access_ = pdf::Access::Owner;  // to the source
    std::uint32_t opening_ = 0;
    PageList pages_;
    std::shared_ptr<PDFOutline> outlineRoot_;
    bool outlineRead_ = false;
    bool outlineReplaced_ = false;
    std::vector<std::string> writeWarnings_;
    int writtenPageCount_ = 0;
};

}  // namespace quillon
