#include "platform/ui/TableModel.h"

#include "platform/ui/TableDataSource.h"

#include <QLocale>

#include <utility>

namespace quillon {

void TableModel::setColumns(QList<TableColumn> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    endResetModel();
}

void TableModel::setDataSource(TableDataSource* dataSource) {
    dataSource_ = dataSource;
    reload();
}

void TableModel::reload() {
    beginResetModel();
    rows_ = dataSource_ != nullptr ? dataSource_->numberOfRowsInTableView() : 0;
    endResetModel();
}

int TableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int TableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rows_ || dataSource_ == nullptr) return {};
    switch (role) {
        case Qt::DisplayRole:
            return text(index);
        case Qt::ToolTipRole:
            return dataSource_->toolTipForTableColumn(identifier(index.column()), index.row());
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(columns_.at(index.column()).alignment | Qt::AlignVCenter);
        default:
            return {};
    }
}

QString TableModel::text(const QModelIndex& index) const {
    const QVariant value = dataSource_->tableViewObjectValueForTableColumn(identifier(index.column()), index.row());
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    const bool rightAligned = columns_.at(index.column()).alignment.testFlag(Qt::AlignRight);
    return isNumber && rightAligned ? QLocale().toString(number) : value.toString();
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section >= columns_.size()) return {};
    if (role == Qt::DisplayRole) return columns_.at(section).title;
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(columns_.at(section).alignment | Qt::AlignVCenter);
    return {};
}

}  // namespace quillon
