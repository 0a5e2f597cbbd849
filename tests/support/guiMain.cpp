// The main function of test programs that lay out text. The others do without the time that fonts take.

#include "tests/support/QtWarnings.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    quillon::test::QtWarnings::install();
    return RUN_ALL_TESTS();
}
