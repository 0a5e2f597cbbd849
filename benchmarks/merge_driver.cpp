// Runs a merge without windows on what its command line names. A tool for measuring, which is not installed.

#include "benchmarks/DriverArguments.h"
#include "benchmarks/DriverMerge.h"
#include "benchmarks/DriverSettings.h"
#include "platform/gui/GuiServices.h"

#include <QCoreApplication>
#include <QFile>

#include <csignal>
#include <cstdio>
#include <memory>
#include <variant>

namespace {

constexpr int exitWritten = 0;
constexpr int exitNotWritten = 1;
constexpr int exitUsage = 2;

int usageError(const QString& message) {
    std::fprintf(stderr, "merge_driver: %s\nTry merge_driver --help.\n", message.toLocal8Bit().constData());
    return exitUsage;
}

/// Not QCoreApplication::arguments, which takes out options that Qt knows.
QStringList argumentsOf(int argc, char** argv) {
    QStringList result;
    for (int i = 1; i < argc; ++i) result.append(QFile::decodeName(argv[i]));
    return result;
}

/// Only text needs more than the event loop, and a platform that takes time to start, though no display.
std::unique_ptr<QCoreApplication> makeApplication(bool drawsText, int& argc, char** argv) {
    const quillon::GuiServices* const services = drawsText ? quillon::GuiServices::instance() : nullptr;
    if (!services) return std::make_unique<QCoreApplication>(argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    return services->makeApplication(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace quillon;
    // A file that may not grow is an error of writing, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    auto parsed = DriverArguments::parse(argumentsOf(argc, argv));
    if (const auto* error = std::get_if<QString>(&parsed)) return usageError(*error);
    auto& arguments = std::get<DriverArguments>(parsed);
    if (arguments.wantsHelp) {
        std::fputs(DriverArguments::usage().toLocal8Bit().constData(), stdout);
        return 0;
    }
    DriverSettings settings;
    for (const auto& [name, value] : arguments.settings) {
        if (const auto error = settings.set(name, value)) return usageError(*error);
    }

    const auto application = makeApplication(settings.isAddWaterMark() || settings.isAddPageNumber(), argc, argv);
    const DriverReport report = runDriverMerge(std::move(arguments), settings);
    for (const auto& warning : report.warnings) std::fprintf(stderr, "%s\n", warning.c_str());
    std::printf("%s\n", report.line().c_str());
    return report.written ? exitWritten : exitNotWritten;
}
