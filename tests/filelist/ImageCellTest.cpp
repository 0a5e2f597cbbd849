#include "filelist/ImageCell.h"
#include "platform/ui/GraphicsContext.h"

#include <QIcon>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QWidget>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

class ImageCells : public testing::Test {
protected:
    ImageCells() {
        // Red above, blue below.
        QPixmap pixels(16, 16);
        QPainter painter(&pixels);
        painter.fillRect(0, 0, 16, 8, Qt::red);
        painter.fillRect(0, 8, 16, 8, Qt::blue);
        painter.end();
        icon_ = QIcon(pixels);
        plain_.setStringValue(QStringLiteral("name"));
        cell_.setStringValue(QStringLiteral("name"));
    }

    /// What the cell draws into a frame of its own height.
    [[nodiscard]] QImage drawn(const QRectF& frame) {
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        const GraphicsContext context(painter);
        cell_.drawWithFrame(frame, view_);
        return image;
    }

    /// The first column of the image, from `fromX` on, that is not white.
    [[nodiscard]] static int firstInked(const QImage& image, int fromX) {
        for (int x = fromX; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y) != QColor(Qt::white)) return x;
            }
        }
        return -1;
    }

    QIcon icon_;
    QWidget view_;
    TextFieldCell plain_;
    ImageCell cell_;
    const QRectF bounds_{10, 20, 100, 30};
};

TEST_F(ImageCells, ANewCellHasNoImage) {
    EXPECT_EQ(cell_.myImage(), nullptr);
}

TEST_F(ImageCells, TheImageIsSixteenPointsLarge) {
    EXPECT_EQ(cell_.imageSize(), QSizeF(16, 16));
}

TEST_F(ImageCells, TheImageRectangleLeavesOutTheYOfTheBounds) {
    cell_.setMyImage(&icon_);
    EXPECT_EQ(cell_.imageRectForBounds(bounds_), QRectF(13, 7, 16, 16));
}

TEST_F(ImageCells, WithoutAnImageItsRectangleIsZero) {
    EXPECT_EQ(cell_.imageRectForBounds(bounds_), QRectF());
}

TEST_F(ImageCells, TheTitleBeginsBehindTheImage) {
    cell_.setMyImage(&icon_);
    EXPECT_EQ(cell_.titleRectForBounds(bounds_), QRectF(29, 20, 81, 30));
}

TEST_F(ImageCells, WithoutAnImageTheTitleIsThatOfAnyCell) {
    EXPECT_EQ(cell_.titleRectForBounds(bounds_), plain_.titleRectForBounds(bounds_));
}

TEST_F(ImageCells, TheCellIsWiderThanAPlainOne) {
    const QSizeF base = plain_.cellSize();
    EXPECT_EQ(cell_.cellSize(), base + QSizeF(3, 0));
    cell_.setMyImage(&icon_);
    EXPECT_EQ(cell_.cellSize(), base + QSizeF(19, 0));
}

TEST_F(ImageCells, EditingTakesTheRectangleOfTheTitle) {
    cell_.setMyImage(&icon_);
    QLineEdit editor;
    cell_.editWithFrame(bounds_, view_, editor, nullptr, nullptr);
    EXPECT_EQ(editor.geometry(), QRect(29, 20, 81, 30));
    EXPECT_EQ(editor.text(), QStringLiteral("name"));
    editor.setParent(nullptr);
}

TEST_F(ImageCells, SelectingTakesTheRectangleOfTheTitle) {
    cell_.setMyImage(&icon_);
    QLineEdit editor;
    cell_.selectWithFrame(bounds_, view_, editor, nullptr, 1, 2);
    EXPECT_EQ(editor.geometry(), QRect(29, 20, 81, 30));
    EXPECT_EQ(editor.selectedText(), QStringLiteral("am"));
    editor.setParent(nullptr);
}

TEST_F(ImageCells, RotatingTurnsTheContextOverAtTheBottomOfTheCell) {
    QImage image(10, 10, QImage::Format_RGB32);
    QPainter painter(&image);
    cell_.doRotate(painter, 40.0F);
    EXPECT_EQ(painter.transform(), QTransform(1, 0, 0, -1, 0, 40 + plain_.cellSize().height()));
}

TEST_F(ImageCells, TheImageIsDrawnUprightAndCentred) {
    cell_.setMyImage(&icon_);
    const double height = plain_.cellSize().height();
    const QImage image = drawn(QRectF(10, 20, 150, height));
    const int top = static_cast<int>(20 + (height - 16) / 2);
    EXPECT_EQ(image.pixelColor(14, top + 2), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(14, top + 13), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(14, top - 1), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(14, top + 16), QColor(Qt::white));
    EXPECT_EQ(firstInked(image, 0), 13);
}

TEST_F(ImageCells, TheTextIsDrawnThreePointsBehindTheImage) {
    cell_.setMyImage(&icon_);
    cell_.setStringValue(QStringLiteral("||||"));
    const QImage image = drawn(QRectF(10, 20, 150, plain_.cellSize().height()));
    // The frame of the text begins at 10 + 22; the text keeps its margin within.
    EXPECT_GE(firstInked(image, 29), 32);
    EXPECT_LE(firstInked(image, 29), 40);
}

TEST_F(ImageCells, WithoutAnImageThePlainCellIsDrawn) {
    cell_.setStringValue(QStringLiteral("||||"));
    const QImage image = drawn(QRectF(10, 20, 150, plain_.cellSize().height()));
    EXPECT_LT(firstInked(image, 0), 20);
}

}  // namespace
