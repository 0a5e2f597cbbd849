#include "tests/support/QtWarnings.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Death tests start the program again instead of forking one that may have threads.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QCoreApplication application(argc, argv);
    quillon::test::QtWarnings::install();
    return RUN_ALL_TESTS();
}
