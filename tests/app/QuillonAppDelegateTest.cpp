#include "app/QuillonAppDelegate.h"
#include "tests/app/MainWindowTest.h"

using namespace quillon;

namespace {

class Delegate : public test::MainWindowTest {
protected:
    Delegate() { delegate_.setWindow(&controller_.window()); }

    QuillonAppDelegate delegate_;
};

TEST_F(Delegate, LaunchingShowsTheWindow) {
    controller_.window().hide();
    delegate_.applicationDidFinishLaunching();
    EXPECT_TRUE(controller_.window().isVisible());
    EXPECT_EQ(delegate_.window(), &controller_.window());
}

TEST_F(Delegate, ClosingHidesAndReopeningShowsTheSameList) {
    addPdfs({QStringLiteral("a"), QStringLiteral("b")});
    choose("actionClose");
    EXPECT_FALSE(controller_.window().isVisible());
    EXPECT_TRUE(delegate_.applicationShouldHandleReopen(false));
    EXPECT_TRUE(controller_.window().isVisible());
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(table().numberOfRows(), 2);
}

TEST_F(Delegate, TheCloseButtonOfTheWindowHidesItToo) {
    controller_.window().close();
    EXPECT_FALSE(controller_.window().isVisible());
}

TEST_F(Delegate, ReopeningWithVisibleWindowsDoesNothingMore) {
    controller_.window().hide();
    EXPECT_TRUE(delegate_.applicationShouldHandleReopen(true));
    EXPECT_FALSE(controller_.window().isVisible());
}

TEST_F(Delegate, AMinimizedWindowComesBackOnActivation) {
    controller_.window().showMinimized();
    delegate_.activate();
    EXPECT_FALSE(controller_.window().isMinimized());
    EXPECT_TRUE(controller_.window().isVisible());
}

}  // namespace
