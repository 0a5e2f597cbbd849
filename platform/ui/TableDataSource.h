#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <QVariant>

namespace quillon {

/// What happens with something that is dropped.
enum class DragOperation { None = 0, Copy = 1 };

/// Where a drop would go: onto a row or in front of it.
enum class DropOperation { On = 0, Above = 1 };

/// Answers what a TableView shows, and takes what is dropped on it. Main thread only.
///
/// A value is asked for only when its row comes into sight, and again whenever it is drawn.
class TableDataSource {
public:
    virtual ~TableDataSource() = default;

    [[nodiscard]] virtual int numberOfRowsInTableView() const = 0;
    /// `column` is the identifier of a column. A number is shown in the user's notation, anything else as text.
    [[nodiscard]] virtual QVariant tableViewObjectValueForTableColumn(const QString& column, int row) = 0;
    /// The tool tip of a cell; empty for none.
    [[nodiscard]] virtual QString toolTipForTableColumn(const QString& column, int row) const = 0;

    /// `urls` is what is dragged, at least one; the row is the one under the pointer, or the number of rows below them.
    [[nodiscard]] virtual DragOperation tableViewValidateDrop(const QList<QUrl>& urls, int proposedRow,
                                                              DropOperation proposedDropOperation) = 0;
    /// True when the drop was taken.
    virtual bool tableViewAcceptDrop(const QList<QUrl>& urls, int row, DropOperation dropOperation) = 0;
};

}  // namespace quillon
