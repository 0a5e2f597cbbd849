#include "platform/ui/TableView.h"

#include "platform/ui/TableItemDelegate.h"
#include "platform/ui/TableModel.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QProxyStyle>
#include <QScrollBar>

#include <algorithm>
#include <array>

namespace quillon {
namespace {

/// More room beside texts than the desktop's style gives them, so that a number and the text to its right do not touch.
class RoomyStyle final : public QProxyStyle {
public:
    /// On top of the style that the program has at this moment.
    RoomyStyle() : QProxyStyle(QApplication::style()->name()), base_(QApplication::style()->name()) {}

    [[nodiscard]] bool isUpToDate() const { return base_ == QApplication::style()->name(); }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        const int usual = QProxyStyle::pixelMetric(metric, option, widget);
        constexpr int room = 6;
        return metric == PM_HeaderMargin || metric == PM_FocusFrameHMargin ? std::max(usual, room) : usual;
    }

private:
    QString base_;
};

}  // namespace

TableView::TableView(QWidget* parent) : QTreeView(parent), model_(std::make_unique<TableModel>()) {
    followStyle();
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);  // so that no row is measured to find the place of another
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setAcceptDrops(true);
    setItemDelegate(new TableItemDelegate(this));
    setModel(model_.get());
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &TableView::changed);
}

void TableView::followStyle() {
    const auto* previous = dynamic_cast<const RoomyStyle*>(style());
    if (previous != nullptr && previous->isUpToDate()) return;
    auto* roomy = new RoomyStyle;
    roomy->setParent(this);
    setStyle(roomy);
    header()->setStyle(roomy);
    delete previous;
}

TableView::~TableView() {
    setModel(nullptr);
}

void TableView::setColumns(QList<TableColumn> columns) {
    model_->setColumns(std::move(columns));
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    for (int i = 0; i < model_->columnCount(); ++i) {
        header()->setSectionResizeMode(i, i == 0 ? QHeaderView::Stretch : QHeaderView::Interactive);
        header()->resizeSection(i, model_->columns().at(i).width);
    }
}

void TableView::setDataSource(TableDataSource* dataSource) {
    dataSource_ = dataSource;
    model_->setDataSource(dataSource);
    Q_EMIT changed();
}

void TableView::setDelegate(TableDelegate* delegate) {
    static_cast<TableItemDelegate*>(itemDelegate())->setTableDelegate(delegate);
    viewport()->update();
}

void TableView::setPlaceholder(const QIcon& icon, const QString& text, const QString& details) {
    placeholderIcon_ = icon;
    placeholderText_ = text;
    placeholderDetails_ = details;
    viewport()->update();
}

void TableView::reloadData() {
    const int selected = selectedRow();
    const int scrolled = verticalScrollBar()->value();
    model_->reload();
    if (selected >= 0) {
        const QModelIndex index = model_->index(std::min(selected, numberOfRows() - 1), 0);
        if (index.isValid()) setCurrentIndex(index);
    }
    verticalScrollBar()->setValue(scrolled);
    Q_EMIT changed();
}

void TableView::setEnabled(bool enabled) {
    // Qt moves the focus on when it disables a widget, and does not give it back.
    if (!enabled && isEnabled()) hadFocus_ = hasFocus();
    QTreeView::setEnabled(enabled);
    if (enabled && std::exchange(hadFocus_, false)) setFocus();
}

int TableView::numberOfRows() const {
    return model_->rowCount();
}

int TableView::selectedRow() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.constFirst().row();
}

void TableView::deselectRow(int row) {
    const QModelIndex index = model_->index(row, 0);
    if (index.isValid()) selectionModel()->select(index, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

void TableView::selectRowIndexes(const QList<int>& rows, bool byExtendingSelection) {
    if (!byExtendingSelection) clearSelection();
    for (const int row : rows) {
        const QModelIndex index = model_->index(row, 0);
        if (!index.isValid()) continue;
        setCurrentIndex(index);
        scrollTo(index);
    }
}

QRect TableView::rectOfRow(int row) const {
    const QRect first = visualRect(model_->index(row, 0));
    return first.isValid() ? QRect(0, first.top(), viewport()->width(), first.height()) : QRect();
}

void TableView::setNeedsDisplayInRect(const QRect& rect) {
    viewport()->update(rect);
    Q_EMIT changed();
}

void TableView::keyboardSearch(const QString& search) {
    // In the column of the names: another one would have to be measured, row by row, to be searched.
    const QModelIndex current = currentIndex();
    if (current.isValid() && current.column() != 0) {
        selectionModel()->setCurrentIndex(current.siblingAtColumn(0), QItemSelectionModel::NoUpdate);
    }
    QTreeView::keyboardSearch(search);
}

void TableView::keyPressEvent(QKeyEvent* event) {
    // A list that gets the focus has a current row that is not selected. Moving from there would leave it out, and at
    // the first row Home and Up would do nothing.
    constexpr std::array movements{Qt::Key_Home, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
    const bool moves = std::find(movements.begin(), movements.end(), event->key()) != movements.end();
    if (moves && selectedRow() < 0 && numberOfRows() > 0) {
        const QModelIndex current = currentIndex();
        selectRowIndexes({event->key() == Qt::Key_Home || !current.isValid() ? 0 : current.row()}, false);
        return;
    }
    QTreeView::keyPressEvent(event);
}

void TableView::mousePressEvent(QMouseEvent* event) {
    clickedRow_ = indexAt(event->position().toPoint()).row();
    QTreeView::mousePressEvent(event);
}

void TableView::mouseDoubleClickEvent(QMouseEvent* event) {
    clickedRow_ = indexAt(event->position().toPoint()).row();
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && doubleAction_) doubleAction_();
}

bool TableView::carriesDraggedType(const QMimeData& dragged) const {
    // A list of addresses may be an empty one.
    return !dragged.urls().isEmpty() &&
           std::any_of(draggedTypes_.begin(), draggedTypes_.end(),
                       [&dragged](const QString& type) { return dragged.hasFormat(type); });
}

bool TableView::isDropTaken(const QDropEvent& event) const {
    if (dataSource_ == nullptr || !event.possibleActions().testFlag(Qt::CopyAction)) return false;
    if (!carriesDraggedType(*event.mimeData())) return false;
    const auto [row, operation] = dropPlace(event.position().toPoint());
    return dataSource_->tableViewValidateDrop(event.mimeData()->urls(), row, operation) == DragOperation::Copy;
}

std::pair<int, DropOperation> TableView::dropPlace(const QPoint& point) const {
    const int row = indexAt(point).row();
    return row < 0 ? std::pair(numberOfRows(), DropOperation::Above) : std::pair(row, DropOperation::On);
}

void TableView::dragEnterEvent(QDragEnterEvent* event) {
    const bool taken = isDropTaken(*event);
    setDropHighlighted(taken);
    if (!taken) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void TableView::dragMoveEvent(QDragMoveEvent* event) {
    // What was decided on entering holds: the same files are dragged, wherever in the list they are.
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(dropHighlighted_);
}

void TableView::dragLeaveEvent(QDragLeaveEvent* event) {
    setDropHighlighted(false);
    event->accept();
}

void TableView::dropEvent(QDropEvent* event) {
    const bool highlighted = dropHighlighted_;
    setDropHighlighted(false);
    event->setDropAction(Qt::CopyAction);
    const auto [row, operation] = dropPlace(event->position().toPoint());
    event->setAccepted(highlighted && dataSource_->tableViewAcceptDrop(event->mimeData()->urls(), row, operation));
}

void TableView::setDropHighlighted(bool highlighted) {
    dropHighlighted_ = highlighted;
    viewport()->update();
}

void TableView::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    // A widget with a style of its own is not told that the program has another one.
    if (event->type() == QEvent::PaletteChange) followStyle();
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) viewport()->update();
}

void TableView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    // Values are found out when they are drawn.
    Q_EMIT changed();
    if (numberOfRows() == 0) paintPlaceholder();
    if (dropHighlighted_) {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        constexpr int width = 3;
        painter.setPen(QPen(palette().color(QPalette::Highlight), width));
        painter.drawRect(viewport()->rect().adjusted(width - 1, width - 1, -width, -width));
    }
}

void TableView::paintPlaceholder() {
    QPainter painter(viewport());
    const QRect area = viewport()->rect();
    constexpr int iconSize = 64;
    constexpr int gap = 12;
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    const int line = QFontMetrics(large).height();
    const int small = fontMetrics().height();
    int y = area.center().y() - (iconSize + gap + line + gap / 2 + small) / 2;
    placeholderIcon_.paint(&painter, QRect(area.center().x() - iconSize / 2, y, iconSize, iconSize));
    y += iconSize + gap;
    painter.setFont(large);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(area.left(), y, area.width(), line), Qt::AlignCenter, placeholderText_);
    y += line + gap / 2;
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(QRect(area.left(), y, area.width(), small), Qt::AlignCenter, placeholderDetails_);
}

}  // namespace quillon
