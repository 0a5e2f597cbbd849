#include "tests/support/ui/SettingsPortal.h"

#include <QCoreApplication>

#include <cstdlib>

/// A desktop that prefers dark colours, for as long as it runs.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    quillon::test::SettingsPortal portal(1);
    if (!portal.serve(QDBusConnection::sessionBus())) return EXIT_FAILURE;
    return QCoreApplication::exec();
}
