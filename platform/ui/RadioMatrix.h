#pragma once

#include <QWidget>

#include <vector>

class QRadioButton;

namespace quillon {

/// A column of radio buttons, of which one is selected. Other controls may stand beside them.
class RadioMatrix final : public QWidget {
    Q_OBJECT

public:
    explicit RadioMatrix(QWidget* parent = nullptr) : QWidget(parent) {}

    /// Makes `cell`, a child of this widget, the next row.
    void addRow(QRadioButton& cell);

    /// Counted from 0; -1 as long as no row was ever selected.
    [[nodiscard]] int selectedRow() const noexcept { return selectedRow_; }

    /// Selects the row, or the nearest that there is. Does not count as a click.
    void selectRow(int row);

    /// Gives the keyboard to the selected row.
    void focusSelectedRow();

    /// A row that is disabled cannot be selected by a person; the others are as enabled as the matrix.
    void setRowEnabled(int row, bool enabled);
    [[nodiscard]] bool isRowEnabled(int row) const;

Q_SIGNALS:
    /// A person has clicked a row, or moved the selection by key.
    void clicked();

private:
    [[nodiscard]] QRadioButton& cell(int row) const { return *cells_[static_cast<std::size_t>(row)]; }

    std::vector<QRadioButton*> cells_;  // not owned: children
    int selectedRow_ = -1;
};

}  // namespace quillon
