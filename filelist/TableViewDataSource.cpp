#include "filelist/TableViewDataSource.h"

#include "filelist/CellValue.h"
#include "filelist/ValidatePDF.h"
#include "merge/cacheData.h"
#include "platform/image/Image.h"
#include "platform/pdf/PDFDocument.h"
#include "platform/ui/TableView.h"
#include "platform/ui/Workspace.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <utility>

namespace quillon {

/// The table is disabled while the length of the list changes, and reloaded and as it was at the end.
class TableViewDataSource::TableChange {
public:
    explicit TableChange(TableView& view) : view_(view), wasEnabled_(view.isEnabled()) { view_.setEnabled(false); }
    TableChange(const TableChange&) = delete;
    TableChange& operator=(const TableChange&) = delete;
    ~TableChange() {
        view_.reloadData();
        view_.setEnabled(wasEnabled_);
    }

private:
    TableView& view_;
    bool wasEnabled_;
};

TableViewDataSource::TableViewDataSource(TableView& view, Workspace& workspace)
    : tableView_(view), workspace_(workspace) {
    tableView_.setDoubleAction([this] { openFileAtIndex(); });
}

TableViewDataSource::~TableViewDataSource() = default;

int TableViewDataSource::numberOfRowsInTableView() const {
    return static_cast<int>(cache_.size());
}

QVariant TableViewDataSource::tableViewObjectValueForTableColumn(const QString& column, int row) {
    return cellValue(entry(row), column);
}

QString TableViewDataSource::toolTipForTableColumn(const QString& /*column*/, int row) const {
    return entry(row).url().toLocalFile();
}

bool TableViewDataSource::validatePDF(const QUrl& url) {
    return ValidatePDF::isPDFValidate(QFile::encodeName(url.toLocalFile()).constData());
}

bool TableViewDataSource::validateImage(const QUrl& url) {
    return Image::initWithContentsOfURL(url) != nullptr;
}

DragOperation TableViewDataSource::tableViewValidateDrop(const QList<QUrl>& urls, int /*proposedRow*/,
                                                         DropOperation /*proposedDropOperation*/) {
    const QUrl& url = urls.constFirst();
    return validatePDF(url) || validateImage(url) ? DragOperation::Copy : DragOperation::None;
}

bool TableViewDataSource::tableViewAcceptDrop(const QList<QUrl>& urls, int /*row*/, DropOperation /*dropOperation*/) {
    addFile(urls.constFirst());
    return true;
}

void TableViewDataSource::addFile(const QUrl& url) {
    auto added = std::make_shared<cacheData>(url);
    if (!PDFDocument::initWithURL(url)) added->setIsImage(true);
    const TableChange change(tableView_);
    cache_.push_back(std::move(added));
}

void TableViewDataSource::addFiles(const QList<QUrl>& urls) {
    const TableChange change(tableView_);
    for (const QUrl& url : urls) {
        auto added = std::make_shared<cacheData>(url);
        if (!validatePDF(url)) {
            if (!validateImage(url)) continue;
            added->setIsImage(true);
        }
        cache_.push_back(std::move(added));
    }
}

void TableViewDataSource::addDirectory(const QUrl& url) {
    const QDir folder(url.toLocalFile());
    const QStringList names =
        folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    if (names.isEmpty()) return;
    QList<QUrl> urls;
    urls.reserve(names.size());
    for (const QString& name : names) urls.append(QUrl::fromLocalFile(folder.filePath(name)));
    addFiles(urls);
}

void TableViewDataSource::deleteRow(int row) {
    if (row < 0 || row >= numberOfRowsInTableView()) return;
    if (row == cacheRow_) cacheRow_ = -1;
    const TableChange change(tableView_);
    cache_.erase(cache_.begin() + row);
}

void TableViewDataSource::deleteAll() {
    cacheRow_ = -1;
    const TableChange change(tableView_);
    cache_.clear();
}

void TableViewDataSource::swapRow(int row, int withRow) {
    entry(row).swap(entry(withRow));
    redrawRow(row);
    redrawRow(withRow);
}

void TableViewDataSource::redrawRow(int row) {
    tableView_.setNeedsDisplayInRect(tableView_.rectOfRow(row));
}

void TableViewDataSource::updatePassowrdColumn(int row, bool isNeed) {
    entry(row).setIsDecrypted(!isNeed);
    redrawRow(row);
}

void TableViewDataSource::updateMethodColumn(int row, std::int32_t method, const QString& value) {
    entry(row).setValue(value);
    entry(row).setMergeMethod(method);
    redrawRow(row);
}

bool TableViewDataSource::decryptInRow(int row, const QString& Password) {
    if (row != cacheRow_) {
        cacheRow_ = row;
        cachePDFDocument_ = PDFDocument::initWithURL(entry(row).url());
    }
    if (!cachePDFDocument_ || !cachePDFDocument_->unlockWithPassword(Password)) return false;
    if (!cachePDFDocument_->allowsCopying()) return false;
    entry(row).setPassword(Password);
    updatePassowrdColumn(row, false);
    return true;
}

void TableViewDataSource::openFileAtIndex() {
    const int row = tableView_.clickedRow();
    if (row < 0 || row >= numberOfRowsInTableView()) return;
    workspace_.openFile(entry(row).url().toLocalFile());
}

bool TableViewDataSource::isAllDecrypt() const {
    return std::all_of(cache_.begin(), cache_.end(), [](const auto& data) { return data->isDecrypted(); });
}

bool TableViewDataSource::isOrderMakeSense() const {
    bool isBehindCross = false;
    for (const auto& data : cache_) {
        switch (data->mergeMethod()) {
            case MergeMethodCross:
            case MergeMethodCrossReverse:
                isBehindCross = true;
                break;
            case MergeMethodWhole:
            case MergeMethodPart:
                isBehindCross = false;
                break;
            case MergeMethodRepeat:
                return isBehindCross;
            default:
                break;
        }
    }
    return true;
}

bool TableViewDataSource::isImage(int row) const {
    return entry(row).isImage();
}

bool TableViewDataSource::isEncrypt(int row) const {
    return entry(row).needPassword() == 1 && !entry(row).isDecrypted();
}

const std::shared_ptr<cacheData>& TableViewDataSource::getDataOfSelectedRow(int row) const {
    return cache_[static_cast<std::size_t>(row)];
}

}  // namespace quillon
