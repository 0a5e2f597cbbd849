#include "platform/ui/TableItemDelegate.h"

#include "platform/ui/GraphicsContext.h"
#include "platform/ui/TableDelegate.h"
#include "platform/ui/TableModel.h"
#include "platform/ui/TextFieldCell.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace quillon {
namespace {

QColor textColor(const QStyleOptionViewItem& option) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool active = option.state.testFlag(QStyle::State_Active);
    const auto group = !enabled ? QPalette::Disabled : (active ? QPalette::Normal : QPalette::Inactive);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    return option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
}

}  // namespace

void TableItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString column = static_cast<const TableModel*>(index.model())->identifier(index.column());
    std::unique_ptr<TextFieldCell> cell;
    if (delegate_ != nullptr) cell = delegate_->tableViewDataCellForTableColumn(column, index.row());
    if (!cell) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    cell->setStringValue(background.text);
    cell->setFont(background.font);
    cell->setTextColor(textColor(background));
    background.text.clear();
    const QWidget* view = option.widget;
    const QStyle* style = view != nullptr ? view->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, view);

    delegate_->tableViewWillDisplayCell(*cell, column, index.row());
    const GraphicsContext context(*painter);
    cell->drawWithFrame(option.rect, *const_cast<QWidget*>(view));
}

QSize TableItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
    TextFieldCell cell;
    cell.setFont(option.font);
    return cell.cellSize().toSize();
}

}  // namespace quillon
