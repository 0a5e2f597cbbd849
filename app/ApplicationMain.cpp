#include "app/ApplicationMain.h"

#include "app/MainWindowController.h"
#include "app/QuillonAppDelegate.h"
#include "platform/store/UserDefaults.h"
#include "platform/ui/DesktopColorScheme.h"
#include "platform/ui/DesktopWorkspace.h"
#include "platform/ui/FilePanels.h"
#include "platform/ui/RunningProgram.h"

#include <QAction>
#include <QApplication>
#include <QIcon>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace quillon {
namespace {

int showRunningProgram(const RunningProgram& program) {
    constexpr int patienceMilliseconds = 10'000;
    if (program.askToReopen(patienceMilliseconds)) return EXIT_SUCCESS;
    std::fputs("quillon: it is running already, but does not answer\n", stderr);
    return EXIT_FAILURE;
}

bool hasVisibleWindows() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && !window->isMinimized()) return true;
    }
    return false;
}

}  // namespace

int ApplicationMain(int argc, char** argv) {
    // A file that may not grow is an error of writing, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillon"));
    QApplication::setOrganizationName(QStringLiteral("Quillon"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLON_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("quillon"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/resources/icons/quillon.svg")));
    QApplication::setQuitOnLastWindowClosed(false);

    RunningProgram program(QStringLiteral("quillon"));
    if (!program.claim()) return showRunningProgram(program);

    DesktopColorScheme colorScheme;
    colorScheme.follow();
    FilePanels panels;
    DesktopWorkspace workspace;
    UserDefaults defaults(UserDefaults::standardPath());
    MainWindowController controller(panels, workspace, defaults);
    QuillonAppDelegate delegate;
    delegate.setWindow(&controller.window());
    program.setReopenHandler([&delegate] {
        if (delegate.applicationShouldHandleReopen(hasVisibleWindows())) delegate.activate();
    });
    QObject::connect(&controller, &MainWindowController::quitRequested, &application, &QCoreApplication::quit);
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}

}  // namespace quillon
