#include "platform/ui/TableView.h"
#include "tests/support/ui/Windows.h"

#include <QDragEnterEvent>
#include <QLineEdit>
#include <QLocale>
#include <QMimeData>
#include <QScrollBar>
#include <QSet>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

/// Rows that say where they are, and a note of which were asked for.
class Rows final : public TableDataSource {
public:
    int count = 3;
    bool takesDrops = true;
    QSet<int> asked;
    QList<QUrl> dropped;
    int droppedRow = -2;
    DropOperation droppedOperation = DropOperation::On;

    [[nodiscard]] int numberOfRowsInTableView() const override { return count; }
    [[nodiscard]] QVariant tableViewObjectValueForTableColumn(const QString& column, int row) override {
        if (column == QLatin1String("Name")) return QStringLiteral("row %1").arg(row);
        asked.insert(row);
        return 1000 * row;
    }
    [[nodiscard]] QString toolTipForTableColumn(const QString& column, int row) const override {
        return column + QString::number(row);
    }
    [[nodiscard]] DragOperation tableViewValidateDrop(const QList<QUrl>&, int, DropOperation) override {
        return takesDrops ? DragOperation::Copy : DragOperation::None;
    }
    bool tableViewAcceptDrop(const QList<QUrl>& urls, int row, DropOperation operation) override {
        dropped = urls;
        droppedRow = row;
        droppedOperation = operation;
        return true;
    }
};

class Table : public testing::Test {
protected:
    Table() {
        table_.setColumns({{QStringLiteral("Name"), QStringLiteral("Name"), 100, Qt::AlignLeft},
                           {QStringLiteral("Number"), QStringLiteral("Number"), 80, Qt::AlignRight}});
        table_.setDataSource(&rows_);
        table_.registerForDraggedTypes({QStringLiteral("text/uri-list")});
        table_.resize(300, 200);
        table_.show();
        files_.setUrls({QUrl::fromLocalFile(QStringLiteral("/a")), QUrl::fromLocalFile(QStringLiteral("/b"))});
    }
    ~Table() override { table_.setDataSource(nullptr); }

    [[nodiscard]] QString text(int row, int column) const {
        return table_.model()->index(row, column).data().toString();
    }
    bool enter(const QMimeData& mimeData) {
        QDragEnterEvent event(QPoint(10, 10), Qt::CopyAction, &mimeData, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(table_.viewport(), &event);
        return event.isAccepted();
    }
    bool drop(const QPoint& point) {
        QDropEvent event(QPointF(point), Qt::CopyAction, &files_, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(table_.viewport(), &event);
        return event.isAccepted();
    }

    Rows rows_;
    TableView table_;
    QMimeData files_;
};

TEST_F(Table, ShowsWhatTheDataSourceAnswers) {
    EXPECT_EQ(table_.numberOfRows(), 3);
    EXPECT_EQ(text(1, 0), QStringLiteral("row 1"));
    EXPECT_EQ(text(2, 1), QLocale().toString(2000));
    EXPECT_EQ(table_.model()->index(1, 0).data(Qt::ToolTipRole).toString(), QStringLiteral("Name1"));
    EXPECT_TRUE(
        table_.model()->index(1, 1).data(Qt::TextAlignmentRole).value<Qt::Alignment>().testFlag(Qt::AlignRight));
}

TEST_F(Table, AsksOnlyForRowsThatAreSeen) {
    rows_.count = 10'000;
    rows_.asked.clear();
    table_.reloadData();
    (void)table_.grab();
    EXPECT_FALSE(rows_.asked.isEmpty());
    EXPECT_LT(rows_.asked.size(), 20);
    rows_.asked.clear();
    table_.verticalScrollBar()->setValue(table_.verticalScrollBar()->maximum());
    (void)table_.grab();
    EXPECT_TRUE(rows_.asked.contains(9999));
    EXPECT_LT(rows_.asked.size(), 20);
}

TEST_F(Table, SearchingByKeysAsksForNamesAlone) {
    rows_.count = 10'000;
    table_.reloadData();
    table_.setCurrentIndex(table_.model()->index(0, 1));
    (void)table_.grab();
    rows_.asked.clear();
    table_.keyboardSearch(QStringLiteral("row 9000"));
    EXPECT_EQ(table_.selectedRow(), 9000);
    EXPECT_LT(rows_.asked.size(), 20);
}

TEST_F(Table, SelectsOneRowAtATime) {
    EXPECT_EQ(table_.selectedRow(), -1);
    EXPECT_EQ(table_.numberOfSelectedRows(), 0);
    table_.selectRowIndexes({1}, false);
    table_.selectRowIndexes({2}, true);
    EXPECT_EQ(table_.selectedRow(), 2);
    EXPECT_EQ(table_.numberOfSelectedRows(), 1);
    table_.deselectRow(2);
    EXPECT_EQ(table_.selectedRow(), -1);
}

TEST_F(Table, TheFirstMovementByKeysSelectsTheCurrentRow) {
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Up, Qt::Key_Down}) {
        table_.clearSelection();
        table_.selectionModel()->setCurrentIndex(table_.model()->index(0, 0), QItemSelectionModel::NoUpdate);
        QTest::keyClick(&table_, key);
        EXPECT_EQ(table_.selectedRow(), 0);
    }
    QTest::keyClick(&table_, Qt::Key_Down);
    EXPECT_EQ(table_.selectedRow(), 1);
}

TEST_F(Table, ReloadingKeepsTheSelectionAtItsRowOrMovesItToTheLast) {
    table_.selectRowIndexes({2}, false);
    table_.reloadData();
    EXPECT_EQ(table_.selectedRow(), 2);
    rows_.count = 2;
    table_.reloadData();
    EXPECT_EQ(table_.selectedRow(), 1);
    rows_.count = 0;
    table_.reloadData();
    EXPECT_EQ(table_.selectedRow(), -1);
}

TEST_F(Table, KeepsTheFocusOverBeingDisabled) {
    QWidget window;
    QVBoxLayout layout(&window);
    TableView table;
    QLineEdit other;
    layout.addWidget(&table);
    layout.addWidget(&other);
    window.show();
    window.activateWindow();
    table.setFocus();
    ASSERT_TRUE(test::waitFor([&table] { return table.hasFocus(); }));
    table.setEnabled(false);
    table.setEnabled(true);
    EXPECT_TRUE(table.hasFocus());
}

TEST_F(Table, TheRectangleOfARowIsAsWideAsTheView) {
    const QRect first = table_.rectOfRow(0);
    EXPECT_EQ(first.width(), table_.viewport()->width());
    EXPECT_EQ(table_.rectOfRow(1).top(), first.bottom() + 1);
    EXPECT_TRUE(table_.rectOfRow(3).isNull());
    EXPECT_TRUE(table_.rectOfRow(-1).isNull());
}

TEST_F(Table, TellsWhenWhatItShowsMayHaveChanged) {
    int changes = 0;
    const QObject listener;
    QObject::connect(&table_, &TableView::changed, &listener, [&changes] { ++changes; });
    const auto expectChange = [&changes](const char* what) { EXPECT_GT(std::exchange(changes, 0), 0) << what; };
    table_.reloadData();
    expectChange("reload");
    table_.selectRowIndexes({1}, false);
    expectChange("selection");
    table_.setNeedsDisplayInRect(table_.rectOfRow(1));
    expectChange("a row is drawn again");
    (void)table_.grab();
    expectChange("drawn");
}

TEST_F(Table, ADragOfFilesIsTakenWhenTheDataSourceAgrees) {
    EXPECT_TRUE(enter(files_));
    rows_.takesDrops = false;
    EXPECT_FALSE(enter(files_));
}

TEST_F(Table, ADragOfAnythingElseIsRefused) {
    QMimeData text;
    text.setText(QStringLiteral("/a"));
    EXPECT_FALSE(enter(text));
}

TEST_F(Table, ADragIsShownByAFrame) {
    const QImage before = table_.grab().toImage();
    ASSERT_TRUE(enter(files_));
    EXPECT_NE(table_.grab().toImage(), before);
    QDragLeaveEvent leave;
    QApplication::sendEvent(table_.viewport(), &leave);
    EXPECT_EQ(table_.grab().toImage(), before);
}

TEST_F(Table, ADropIsHandedOnWithItsPlace) {
    ASSERT_TRUE(enter(files_));
    EXPECT_TRUE(drop(table_.rectOfRow(1).center()));
    EXPECT_EQ(rows_.dropped, files_.urls());
    EXPECT_EQ(rows_.droppedRow, 1);
    EXPECT_EQ(rows_.droppedOperation, DropOperation::On);
    ASSERT_TRUE(enter(files_));
    EXPECT_TRUE(drop(QPoint(10, 150)));
    EXPECT_EQ(rows_.droppedRow, 3);
    EXPECT_EQ(rows_.droppedOperation, DropOperation::Above);
}

TEST_F(Table, TheDoubleActionRunsOnTheLeftButton) {
    int row = -2;
    table_.setDoubleAction([this, &row] { row = table_.clickedRow(); });
    QTest::mouseDClick(table_.viewport(), Qt::LeftButton, {}, table_.rectOfRow(2).center());
    EXPECT_EQ(row, 2);
    QTest::mouseDClick(table_.viewport(), Qt::LeftButton, {}, QPoint(10, 150));
    EXPECT_EQ(row, -1);
}

TEST_F(Table, AnEmptyListSaysWhatToDo) {
    rows_.count = 0;
    table_.reloadData();
    const QImage before = table_.grab().toImage();
    table_.setPlaceholder(QIcon(), QStringLiteral("Add files"), QStringLiteral("or drop them"));
    EXPECT_NE(table_.grab().toImage(), before);
    rows_.count = 3;
    table_.reloadData();
    const QImage filled = table_.grab().toImage();
    table_.setPlaceholder(QIcon(), QString(), QString());
    EXPECT_EQ(table_.grab().toImage(), filled);
}

}  // namespace
