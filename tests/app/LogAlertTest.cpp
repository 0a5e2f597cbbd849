#include "app/LogAlert.h"
#include "tests/support/ui/Windows.h"

#include <QTimer>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

TEST(LogAlerts, TheFirstArgumentIsTheButtonTheSecondTheMessage) {
    QString button;
    QString text;
    auto modality = Qt::NonModal;
    QTimer::singleShot(0, qApp, [&] {
        QMessageBox* alert = test::visibleAlert();
        ASSERT_NE(alert, nullptr);
        button = alert->buttons().constFirst()->text();
        modality = alert->windowModality();
        EXPECT_EQ(alert->icon(), QMessageBox::Warning);
        text = test::takeAlert();
    });
    LogAlert::AlertOKWithMessage(QStringLiteral("Understood"), QStringLiteral("Something is wrong"));
    EXPECT_EQ(button, QStringLiteral("Understood"));
    EXPECT_EQ(text, QStringLiteral("Something is wrong"));
    EXPECT_EQ(modality, Qt::ApplicationModal);
}

}  // namespace
