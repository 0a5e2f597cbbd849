#pragma once

#include "platform/ui/TableView.h"

#include <QAbstractTableModel>

namespace quillon {

/// Hands the questions of Qt's views on to a data source.
class TableModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    void setColumns(QList<TableColumn> columns);
    void setDataSource(TableDataSource* dataSource);
    void reload();

    [[nodiscard]] QString identifier(int column) const { return columns_.at(column).identifier; }
    [[nodiscard]] const QList<TableColumn>& columns() const noexcept { return columns_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QString text(const QModelIndex& index) const;

    QList<TableColumn> columns_;
    TableDataSource* dataSource_ = nullptr;
    int rows_ = 0;  // as of the last reload; views must not see it change in between
};

}  // namespace quillon
