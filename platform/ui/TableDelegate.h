#pragma once

#include <QString>

#include <memory>

namespace quillon {

class TextFieldCell;

/// Decides how a TableView draws its cells. Main thread only.
class TableDelegate {
public:
    virtual ~TableDelegate() = default;

    [[nodiscard]] virtual bool tableViewShouldEditTableColumn(const QString& column, int row) = 0;
    /// The cell that draws this place of the table; null stands for the column's own.
    [[nodiscard]] virtual std::unique_ptr<TextFieldCell> tableViewDataCellForTableColumn(const QString& column,
                                                                                         int row) = 0;
    /// Called before a cell draws.
    virtual void tableViewWillDisplayCell(TextFieldCell& cell, const QString& forTableColumn, int row) = 0;
};

}  // namespace quillon
