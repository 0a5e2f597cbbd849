#pragma once

#include <QStyledItemDelegate>

namespace quillon {

class TableDelegate;

/// Draws the cells of a TableView that the table's delegate brings its own cell for, the others as Qt does.
class TableItemDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Not owned; null: no cell is special.
    void setTableDelegate(TableDelegate* delegate) { delegate_ = delegate; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// The same for every row, and known without looking at one.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    TableDelegate* delegate_ = nullptr;
};

}  // namespace quillon
