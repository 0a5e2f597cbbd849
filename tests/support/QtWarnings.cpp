#include "tests/support/QtWarnings.h"

#include <QMessageLogContext>
#include <gtest/gtest.h>

#include <cstdio>
#include <mutex>
#include <utility>

namespace quillon::test {
namespace {

std::mutex mutex;
QStringList warnings;  // guarded by mutex

/// What the offscreen platform says of itself whenever a window is shown.
bool isNoise(const QString& message) {
    return message == QLatin1String("This plugin does not support propagateSizeHints()") ||
           message == QLatin1String("This plugin does not support raise()") ||
           message == QLatin1String("This plugin does not support grabbing the keyboard");
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (isNoise(message)) return;
    const QString line = qFormatLogMessage(type, context, message);
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    if (type == QtDebugMsg || type == QtInfoMsg) return;
    const std::lock_guard lock(mutex);
    warnings.append(line);
}

class Listener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& /*info*/) override { (void)QtWarnings::take(); }

    void OnTestEnd(const testing::TestInfo& /*info*/) override {
        for (const QString& warning : QtWarnings::take()) {
            ADD_FAILURE() << "Unexpected warning: " << warning.toStdString();
        }
    }
};

}  // namespace

void QtWarnings::install() {
    qInstallMessageHandler(handleMessage);
    // The end of a test is told to the last listener first, so the printer sees the failure in time.
    testing::UnitTest::GetInstance()->listeners().Append(new Listener);
}

QStringList QtWarnings::take() {
    const std::lock_guard lock(mutex);
    return std::exchange(warnings, {});
}

}  // namespace quillon::test
