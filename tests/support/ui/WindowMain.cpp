#include "tests/support/QtWarnings.h"

#include <QApplication>
#include <gtest/gtest.h>

#ifdef __SANITIZE_THREAD__
/// Qt is not built for the thread sanitizer, which sees the memory of its own threads but not the locks around it.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libQt6Core.so\ncalled_from_lib:libQt6Gui.so\n";
}
#endif

/// The main function of tests that show windows.
int main(int argc, char** argv) {
    // Whatever the machine has for a display, and for settings of the desktop, the tests are the same everywhere.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setQuitOnLastWindowClosed(false);
    quillon::test::QtWarnings::install();
    return RUN_ALL_TESTS();
}
