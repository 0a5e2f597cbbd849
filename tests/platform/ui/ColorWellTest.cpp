#include "platform/ui/ColorWell.h"
#include "tests/support/ui/Windows.h"

#include <QColorDialog>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

class Well : public testing::Test {
protected:
    Well() {
        QObject::connect(&well_, &ColorWell::colorChosen, &well_, [this] { ++choices_; });
        well_.show();
    }

    QColorDialog& open() {
        test::click(well_);
        return test::find<QColorDialog>(well_, "colorPanel");
    }

    QColor shown() { return QColor(well_.icon().pixmap(well_.iconSize()).toImage().pixel(20, 8)); }

    ColorWell well_;
    int choices_ = 0;
};

TEST_F(Well, IsBlackAtFirst) {
    EXPECT_EQ(well_.color(), QColor(Qt::black));
    EXPECT_EQ(shown(), QColor(Qt::black));
}

TEST_F(Well, ShowsItsColour) {
    well_.setColor(Qt::red);
    EXPECT_EQ(well_.color(), QColor(Qt::red));
    EXPECT_EQ(shown(), QColor(Qt::red));
    EXPECT_EQ(well_.accessibleDescription(), QStringLiteral("#ff0000"));
    EXPECT_EQ(choices_, 0);
    well_.setColor(QColor());
    EXPECT_EQ(well_.color(), QColor(Qt::red));
}

TEST_F(Well, AClickOpensADialogWithoutWaitingForIt) {
    well_.setColor(Qt::green);
    const QColorDialog& dialog = open();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.currentColor(), QColor(Qt::green));
    EXPECT_EQ(dialog.windowModality(), Qt::WindowModal);
}

TEST_F(Well, TheColourOfTheDialogIsTakenWhenItIsAccepted) {
    QColorDialog& dialog = open();
    dialog.setCurrentColor(Qt::blue);
    EXPECT_EQ(well_.color(), QColor(Qt::black));
    dialog.accept();
    EXPECT_EQ(well_.color(), QColor(Qt::blue));
    EXPECT_EQ(choices_, 1);
}

TEST_F(Well, ADialogThatIsCancelledChangesNothing) {
    QColorDialog& dialog = open();
    dialog.setCurrentColor(Qt::blue);
    dialog.reject();
    EXPECT_EQ(well_.color(), QColor(Qt::black));
    EXPECT_EQ(choices_, 0);
}

}  // namespace
