#pragma once

#include "platform/ui/TableDataSource.h"

#include <QString>
#include <QUrl>

#include <cstdint>
#include <memory>
#include <vector>

namespace quillon {

class PDFDocument;
class TableView;
class Workspace;
class cacheData;

/// The list of files to merge, in their order, and what the main table shows of it.
///
/// Nothing sorts the list, and a file may be in it any number of times. Size, page count and need of a password are
/// measured when their cell is asked for, and kept in the entry. Nothing is reported: what cannot be read is left out
/// of the list or shows 0 KiB and 0 pages.
///
/// Main thread only. A merge job works with the list itself; it must not change while one runs.
class TableViewDataSource final : public TableDataSource {
public:
    /// The view is told of every change, and a double click on it opens a file in the workspace; both must outlive
    /// the model.
    TableViewDataSource(TableView& view, Workspace& workspace);  // initWithView
    ~TableViewDataSource() override;

    [[nodiscard]] int numberOfRowsInTableView() const override;
    /// The columns are "FileName", "Size" (KiB, rounded down), "MergeMethod", "Pages" and "Password".
    [[nodiscard]] QVariant tableViewObjectValueForTableColumn(const QString& column, int row) override;
    /// The whole path of the file.
    [[nodiscard]] QString toolTipForTableColumn(const QString& column, int row) const override;
    /// Looks at the first URL only: copying when it is a PDF or a picture.
    [[nodiscard]] DragOperation tableViewValidateDrop(const QList<QUrl>& urls, int proposedRow,
                                                      DropOperation proposedDropOperation) override;
    /// Appends the first file at the end of the list, wherever it was dropped.
    bool tableViewAcceptDrop(const QList<QUrl>& urls, int row, DropOperation dropOperation) override;

    /// Appends a file that was dropped: as a picture if it does not open as a PDF.
    void addFile(const QUrl& url);
    /// Appends those that are PDF files or pictures by their content, whatever they are called; the others are skipped.
    void addFiles(const QList<QUrl>& urls);
    /// Appends the PDF files and pictures that are directly in the folder, in the order in which it lists them.
    void addDirectory(const QUrl& url);
    /// Nothing happens outside the list.
    void deleteRow(int row);
    void deleteAll();
    /// Exchanges the contents of two entries; both rows must exist.
    void swapRow(int row, int withRow);

    /// Notes whether the entry still needs a password. The row must exist, as in all that follow.
    void updatePassowrdColumn(int row, bool isNeed);
    /// Sets what the merge does with the entry; `method` is a MergeMethod.
    void updateMethodColumn(int row, std::int32_t method, const QString& value);

    /// Tries a password (a null string for none). True, and the entry is unlocked with it, when it opens the document
    /// and allows copying from it. The document of the last attempt is used again as long as the row is the same.
    [[nodiscard]] bool decryptInRow(int row, const QString& Password);

    /// Opens the file of the clicked row in its default application.
    void openFileAtIndex();

    /// Whether no entry is known to need a password still.
    [[nodiscard]] bool isAllDecrypt() const;
    /// Whether the nearest entry above the first Repeat entry that is none itself is a Cross or Cross reverse entry.
    /// True without Repeat entries. Later ones are not looked at.
    [[nodiscard]] bool isOrderMakeSense() const;
    [[nodiscard]] bool isImage(int row) const;
    /// Whether the entry is known to need a password and has not been given one.
    [[nodiscard]] bool isEncrypt(int row) const;
    [[nodiscard]] const std::shared_ptr<cacheData>& getDataOfSelectedRow(int row) const;

    /// The list itself.
    [[nodiscard]] const std::vector<std::shared_ptr<cacheData>>& cache() const noexcept { return cache_; }

    [[nodiscard]] const std::shared_ptr<PDFDocument>& cachePDFDocument() const noexcept { return cachePDFDocument_; }
    void setCachePDFDocument(std::shared_ptr<PDFDocument> document) { cachePDFDocument_ = std::move(document); }

private:
    class TableChange;

    [[nodiscard]] static bool validatePDF(const QUrl& url);
    [[nodiscard]] static bool validateImage(const QUrl& url);
    [[nodiscard]] cacheData& entry(int row) const { return *cache_[static_cast<std::size_t>(row)]; }
    void redrawRow(int row);

    std::shared_ptr<PDFDocument> cachePDFDocument_;  // of the last password attempt
    std::vector<std::shared_ptr<cacheData>> cache_;
    TableView& tableView_;
    std::int64_t cacheRow_ = -1;  // the row that cachePDFDocument_ was opened for, -1 for none
    Workspace& workspace_;
};

}  // namespace quillon
