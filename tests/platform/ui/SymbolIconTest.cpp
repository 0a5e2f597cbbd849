#include "platform/ui/SymbolIcon.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QPalette>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

class Symbols : public testing::Test {
protected:
    ~Symbols() override { QApplication::setPalette(usual_); }

    /// The colour in the middle of a drawing that is one square of the given colour.
    [[nodiscard]] QColor drawn(const char* color, QIcon::Mode mode = QIcon::Normal) const {
        const std::string drawing =
            std::string(
                R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 8 8"><rect width="8" height="8" fill=")") +
            color + R"("/></svg>)";
        const QIcon icon = symbolIcon(QString::fromStdString(dir_.write("symbol.svg", drawing)));
        return icon.pixmap(QSize(16, 16), mode).toImage().pixelColor(8, 8);
    }

    test::TempDir dir_;
    QPalette usual_ = QApplication::palette();
};

TEST_F(Symbols, BlackFollowsTheColourOfTheText) {
    for (const QColor& color : {QColor(Qt::darkGreen), QColor(Qt::white)}) {
        QPalette palette = usual_;
        palette.setColor(QPalette::ButtonText, color);
        QApplication::setPalette(palette);
        EXPECT_EQ(drawn("#000000"), color);
    }
}

TEST_F(Symbols, BlueFollowsTheColourOfSelectionsUnlessDisabled) {
    EXPECT_EQ(drawn("#0000ff"), usual_.color(QPalette::Active, QPalette::Highlight));
    EXPECT_EQ(drawn("#0000ff", QIcon::Disabled), usual_.color(QPalette::Disabled, QPalette::ButtonText));
}

TEST_F(Symbols, AMissingDrawingIsAnEmptyIcon) {
    EXPECT_TRUE(symbolIcon(QString::fromStdString(dir_.file("none.svg"))).isNull());
}

}  // namespace
