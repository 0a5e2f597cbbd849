#include "platform/ui/RadioMatrix.h"
#include "tests/support/ui/Windows.h"

#include <QRadioButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include <array>

using namespace quillon;

namespace {

class Matrix : public testing::Test {
protected:
    Matrix() {
        auto* layout = new QVBoxLayout(&matrix_);
        for (QRadioButton*& cell : cells_) {
            cell = new QRadioButton(QStringLiteral("row"), &matrix_);
            layout->addWidget(cell);
            matrix_.addRow(*cell);
        }
        QObject::connect(&matrix_, &RadioMatrix::clicked, &matrix_, [this] { ++clicks_; });
        matrix_.show();
    }

    RadioMatrix matrix_;
    std::array<QRadioButton*, 3> cells_{};
    int clicks_ = 0;
};

TEST_F(Matrix, NoRowIsSelectedAtFirst) {
    EXPECT_EQ(matrix_.selectedRow(), -1);
}

TEST_F(Matrix, OneRowIsSelected) {
    matrix_.selectRow(1);
    EXPECT_EQ(matrix_.selectedRow(), 1);
    matrix_.selectRow(2);
    EXPECT_EQ(matrix_.selectedRow(), 2);
    EXPECT_FALSE(cells_[1]->isChecked());
    EXPECT_EQ(clicks_, 0);
}

TEST_F(Matrix, ARowThatIsNotThereBecomesTheNearest) {
    matrix_.selectRow(99);
    EXPECT_EQ(matrix_.selectedRow(), 2);
    matrix_.selectRow(-5);
    EXPECT_EQ(matrix_.selectedRow(), 0);
}

TEST_F(Matrix, AClickSelectsARowAndIsReported) {
    test::click(*cells_[2]);
    EXPECT_EQ(matrix_.selectedRow(), 2);
    EXPECT_EQ(clicks_, 1);
}

TEST_F(Matrix, TheArrowKeysMoveTheSelectionAndAreReported) {
    matrix_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&matrix_));
    test::click(*cells_[0]);
    QTest::keyClick(cells_[0], Qt::Key_Down);
    EXPECT_EQ(matrix_.selectedRow(), 1);
    EXPECT_EQ(clicks_, 2);
}

TEST_F(Matrix, ARowThatIsDisabledCannotBeClicked) {
    matrix_.selectRow(0);
    matrix_.setRowEnabled(1, false);
    test::click(*cells_[1]);
    EXPECT_EQ(matrix_.selectedRow(), 0);
    EXPECT_FALSE(matrix_.isRowEnabled(1));
    EXPECT_TRUE(matrix_.isRowEnabled(2));
}

TEST_F(Matrix, RowsKeepTheirOwnStateWhenTheMatrixIsDisabledForATime) {
    matrix_.setRowEnabled(1, false);
    matrix_.setEnabled(false);
    EXPECT_FALSE(matrix_.isRowEnabled(0));
    matrix_.setEnabled(true);
    EXPECT_TRUE(matrix_.isRowEnabled(0));
    EXPECT_FALSE(matrix_.isRowEnabled(1));
}

}  // namespace
