#include "platform/ui/PopUpButton.h"

#include <QAction>
#include <QMenu>
#include <QStringList>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

class PopUp : public testing::Test {
protected:
    PopUp() {
        auto menu = std::make_unique<QMenu>();
        menu->addAction(QStringLiteral("Choose..."))->setVisible(false);
        menu->addAction(QStringLiteral("one"));
        menu->addAction(QStringLiteral("two"));
        button_.setPopUpMenu(std::move(menu));
        QObject::connect(&button_, &PopUpButton::itemChosen, &button_,
                         [this] { chosen_ << button_.titleOfSelectedItem(); });
    }

    PopUpButton button_;
    QStringList chosen_;
};

TEST_F(PopUp, ItsFaceIsTheFirstItemEvenAHiddenOne) {
    EXPECT_EQ(button_.text(), QStringLiteral("Choose..."));
    EXPECT_TRUE(chosen_.isEmpty());
}

TEST_F(PopUp, AChosenItemIsSelectedAndReported) {
    button_.menu()->actions().at(2)->trigger();
    EXPECT_EQ(button_.text(), QStringLiteral("two"));
    EXPECT_EQ(chosen_, QStringList{QStringLiteral("two")});
}

TEST_F(PopUp, ItemsCanBeSelectedByTheirTitle) {
    button_.selectItemWithTitle(QStringLiteral("one"));
    EXPECT_EQ(button_.titleOfSelectedItem(), QStringLiteral("one"));
    button_.selectItemWithTitle(QStringLiteral("three"));
    EXPECT_EQ(button_.titleOfSelectedItem(), QStringLiteral("one"));
    EXPECT_TRUE(chosen_.isEmpty());
}

TEST_F(PopUp, WithoutAMenuNothingIsSelected) {
    PopUpButton bare;
    bare.selectItemWithTitle(QStringLiteral("one"));
    EXPECT_EQ(bare.titleOfSelectedItem(), QString());
}

}  // namespace
