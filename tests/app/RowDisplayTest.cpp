#include "filelist/ImageCell.h"
#include "tests/app/MainWindowTest.h"

#include <QImage>

using namespace quillon;

namespace {

const QString fileName = QStringLiteral("FileName");

class RowDisplay : public test::MainWindowTest {
protected:
    /// A PDF in the first row, a picture in the second.
    void addBoth() {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::red);
        const std::string picture = dir_.file("b.png");
        ASSERT_TRUE(image.save(QString::fromStdString(picture)));
        add({pdf("a"), urlOf(picture)});
    }

    [[nodiscard]] QImage iconOf(int row) {
        const auto cell = controller_.tableViewDataCellForTableColumn(fileName, row);
        controller_.tableViewWillDisplayCell(*cell, fileName, row);
        const QIcon* icon = static_cast<ImageCell&>(*cell).myImage();
        return icon != nullptr ? icon->pixmap(16, 16).toImage() : QImage();
    }
};

TEST_F(RowDisplay, NoCellIsEditable) {
    addBoth();
    for (const char* column : {"FileName", "Size", "MergeMethod", "Pages", "Password"}) {
        EXPECT_FALSE(controller_.tableViewShouldEditTableColumn(QString::fromLatin1(column), 0));
    }
    EXPECT_EQ(table().editTriggers(), QAbstractItemView::NoEditTriggers);
}

TEST_F(RowDisplay, TheNameHasACellOfItsOwnForEveryCall) {
    addBoth();
    const auto first = controller_.tableViewDataCellForTableColumn(fileName, 0);
    const auto second = controller_.tableViewDataCellForTableColumn(fileName, 0);
    EXPECT_NE(dynamic_cast<ImageCell*>(first.get()), nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(controller_.tableViewDataCellForTableColumn(QStringLiteral("Size"), 0), nullptr);
}

TEST_F(RowDisplay, TheIconTellsPicturesFromPdfFiles) {
    addBoth();
    EXPECT_EQ(iconOf(0).size(), QSize(16, 16));
    EXPECT_EQ(iconOf(0), QImage(QStringLiteral(":/resources/ImagePdf.png")).convertToFormat(iconOf(0).format()));
    EXPECT_EQ(iconOf(1), QImage(QStringLiteral(":/resources/ImagePic.png")).convertToFormat(iconOf(1).format()));
}

TEST_F(RowDisplay, OtherColumnsGetNoIcon) {
    addBoth();
    ImageCell cell;
    controller_.tableViewWillDisplayCell(cell, QStringLiteral("Size"), 0);
    EXPECT_EQ(cell.myImage(), nullptr);
}

TEST_F(RowDisplay, TheFiveColumnsAreShown) {
    QStringList titles;
    for (int i = 0; i < table().model()->columnCount(); ++i) {
        titles.append(table().model()->headerData(i, Qt::Horizontal).toString());
    }
    EXPECT_EQ(titles.join(QLatin1Char('|')), QStringLiteral("File Name|Size (KiB)|Merge Method|Pages|Password"));
}

}  // namespace
