#include "platform/ui/RadioMatrix.h"

#include <QRadioButton>

#include <algorithm>

namespace quillon {

void RadioMatrix::addRow(QRadioButton& cell) {
    const int row = static_cast<int>(cells_.size());
    cells_.push_back(&cell);
    if (cell.isChecked()) selectedRow_ = row;
    connect(&cell, &QRadioButton::toggled, this, [this, row](bool checked) {
        if (checked) selectedRow_ = row;
    });
    // A click by mnemonic leaves the keyboard where it was.
    connect(&cell, &QRadioButton::clicked, &cell, qOverload<>(&QWidget::setFocus));
    connect(&cell, &QRadioButton::clicked, this, &RadioMatrix::clicked);
}

void RadioMatrix::selectRow(int row) {
    if (cells_.empty()) return;
    cell(std::clamp(row, 0, static_cast<int>(cells_.size()) - 1)).setChecked(true);
}

void RadioMatrix::focusSelectedRow() {
    if (selectedRow_ >= 0) cell(selectedRow_).setFocus();
}

void RadioMatrix::setRowEnabled(int row, bool enabled) {
    cell(row).setEnabled(enabled);
}

bool RadioMatrix::isRowEnabled(int row) const {
    return cell(row).isEnabled();
}

}  // namespace quillon
