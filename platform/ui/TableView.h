#pragma once

#include "platform/ui/TableDataSource.h"

#include <QIcon>
#include <QList>
#include <QTreeView>

#include <functional>
#include <memory>
#include <utility>

namespace quillon {

class TableDelegate;
class TableModel;

/// A column of a TableView.
struct TableColumn {
    QString identifier;
    QString title;
    int width = 0;  ///< at first, device-independent pixels
    Qt::Alignment alignment = Qt::AlignLeft;
};

/// A list of rows whose values are answered by a data source, row by row as they come into sight. At most one row is
/// selected. Files are taken by dropping them. Main thread only.
///
/// An index of -1 stands for no row.
class TableView final : public QTreeView {
    Q_OBJECT

public:
    explicit TableView(QWidget* parent = nullptr);
    ~TableView() override;

    /// The first column takes the room that the others leave.
    void setColumns(QList<TableColumn> columns);

    /// Neither is owned; both may be null, and must outlive the view or be taken back.
    void setDataSource(TableDataSource* dataSource);
    void setDelegate(TableDelegate* delegate);

    /// Takes drags that carry one of these MIME types and that the data source agrees to.
    void registerForDraggedTypes(const QStringList& mimeTypes) { draggedTypes_ = mimeTypes; }

    /// Called on a double click, wherever it was, with clickedRow set.
    void setDoubleAction(std::function<void()> action) { doubleAction_ = std::move(action); }

    /// Shown while there are no rows.
    void setPlaceholder(const QIcon& icon, const QString& text, const QString& details);

    /// Asks the data source for everything anew. The selection stays at its row, or moves to the last if there are less
    /// now.
    void reloadData();

    /// Keeps the keyboard focus over being disabled and enabled again.
    void setEnabled(bool enabled);

    [[nodiscard]] int numberOfRows() const;
    [[nodiscard]] int numberOfSelectedRows() const { return selectedRow() >= 0 ? 1 : 0; }
    [[nodiscard]] int selectedRow() const;
    /// The row of the last click; -1 if it was beside the rows.
    [[nodiscard]] int clickedRow() const noexcept { return clickedRow_; }

    void deselectRow(int row);
    /// Selects the last of the rows, and scrolls to it. Rows that are selected already stay so with
    /// `byExtendingSelection`, as far as one selected row allows.
    void selectRowIndexes(const QList<int>& rows, bool byExtendingSelection);

    /// The place of a whole row, in coordinates of the viewport; empty for a row that does not exist.
    [[nodiscard]] QRect rectOfRow(int row) const;
    /// Draws the rows in the rectangle again, with values asked for anew.
    void setNeedsDisplayInRect(const QRect& rect);

    void keyboardSearch(const QString& search) override;

Q_SIGNALS:
    /// Rows came, went, moved, changed or were drawn, or another one is selected.
    void changed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void followStyle();
    [[nodiscard]] bool carriesDraggedType(const QMimeData& dragged) const;
    [[nodiscard]] bool isDropTaken(const QDropEvent& event) const;
    [[nodiscard]] std::pair<int, DropOperation> dropPlace(const QPoint& point) const;
    void setDropHighlighted(bool highlighted);
    void paintPlaceholder();

    std::unique_ptr<TableModel> model_;
    TableDataSource* dataSource_ = nullptr;
    QStringList draggedTypes_;
    std::function<void()> doubleAction_;
    QIcon placeholderIcon_;
    QString placeholderText_;
    QString placeholderDetails_;
    int clickedRow_ = -1;
    bool hadFocus_ = false;
    bool dropHighlighted_ = false;
};

}  // namespace quillon
