#include "platform/ui/DesktopColorScheme.h"
#include "platform/ui/TextColor.h"
#include "tests/support/ui/SettingsPortal.h"
#include "tests/support/ui/Windows.h"

#include <QColor>
#include <QLabel>
#include <QProcess>
#include <QStyle>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

bool isWindowDark() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

class DesktopColorSchemeTest : public testing::Test {
protected:
    ~DesktopColorSchemeTest() override { scheme_.setDark(false); }

    DesktopColorScheme scheme_;
};

TEST_F(DesktopColorSchemeTest, StartsWithTheColoursOfQt) {
    EXPECT_FALSE(scheme_.isDark());
    EXPECT_FALSE(isWindowDark());
}

TEST_F(DesktopColorSchemeTest, DarkAndBack) {
    const QPalette light = QApplication::palette();
    const QString style = QApplication::style()->name();
    scheme_.setDark(true);
    EXPECT_TRUE(isWindowDark());
    EXPECT_EQ(QApplication::style()->name(), QStringLiteral("fusion"));
    scheme_.setDark(false);
    EXPECT_EQ(QApplication::palette(), light);
    EXPECT_EQ(QApplication::style()->name(), style);
}

TEST_F(DesktopColorSchemeTest, TextCanBeReadInBoth) {
    for (const bool dark : {false, true}) {
        scheme_.setDark(dark);
        const QPalette palette = QApplication::palette();
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::WindowText, QPalette::Window},         {QPalette::Text, QPalette::Base},
            {QPalette::Text, QPalette::AlternateBase},        {QPalette::ButtonText, QPalette::Button},
            {QPalette::HighlightedText, QPalette::Highlight}, {QPalette::ToolTipText, QPalette::ToolTipBase}};
        for (const auto& [text, ground] : pairs) {
            EXPECT_GT(std::abs(palette.color(text).lightness() - palette.color(ground).lightness()), 90)
                << dark << text << ground;
        }
    }
}

TEST_F(DesktopColorSchemeTest, ColouredLabelsFollow) {
    QLabel normal;
    QLabel disabled;
    QLabel own;
    setTextColor(normal, controlTextColor());
    setTextColor(disabled, disabledControlTextColor());
    setTextColor(own, QColor(Qt::red));
    scheme_.setDark(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(textColor(normal), controlTextColor());
    EXPECT_EQ(textColor(disabled), disabledControlTextColor());
    EXPECT_EQ(textColor(own), QColor(Qt::red));
    EXPECT_GT(textColor(normal).lightness(), 128);
}

/// A session bus of its own, with a desktop on it.
class DesktopOnBus : public DesktopColorSchemeTest {
protected:
    DesktopOnBus() {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        EXPECT_TRUE(test::waitFor([this] { return daemon_.canReadLine(); }));
        const QByteArray address = daemon_.readLine().trimmed();
        // Qt asks for the address once in the life of a program.
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        desktop_.emplace(QDBusConnection::connectToBus(QString::fromLatin1(address), QStringLiteral("desktop")));
    }
    ~DesktopOnBus() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("desktop"));
        daemon_.terminate();
        daemon_.waitForFinished();
    }

    QProcess daemon_;
    std::optional<QDBusConnection> desktop_;
};

TEST_F(DesktopOnBus, IsAskedAtFirstAndFollowedAfterwards) {
    test::SettingsPortal portal(1);
    ASSERT_TRUE(portal.serve(*desktop_));
    scheme_.follow();
    EXPECT_TRUE(test::waitFor([this] { return scheme_.isDark(); }));
    portal.change(2);
    EXPECT_TRUE(test::waitFor([this] { return !scheme_.isDark(); }));
    portal.change(1);
    EXPECT_TRUE(test::waitFor([this] { return scheme_.isDark(); }));
    portal.change(0);
    EXPECT_TRUE(test::waitFor([this] { return !scheme_.isDark(); }));
}

}  // namespace
