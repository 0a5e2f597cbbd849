#include "tests/support/ExternalReader.h"
#include "tests/support/QtWarnings.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <gtest/gtest.h>

namespace quillon::test {
namespace {

TEST(QtWarnings, AnExpectedWarningCanBeTaken) {
    qWarning("this one is expected");
    const QStringList taken = QtWarnings::take();
    ASSERT_EQ(taken.size(), 1);
    EXPECT_TRUE(taken[0].contains(QLatin1String("this one is expected")));
    EXPECT_TRUE(QtWarnings::take().isEmpty());
}

// Run by the test below in a program of its own, since it has to fail.
TEST(QtWarnings, DISABLED_WarnsUnexpectedly) {
    qWarning("this one is not expected");
}

TEST(QtWarnings, AnUnexpectedWarningFailsTheTest) {
    const auto result = runProgram(QCoreApplication::applicationFilePath(),
                                   {QStringLiteral("--gtest_also_run_disabled_tests"),
                                    QStringLiteral("--gtest_filter=QtWarnings.DISABLED_WarnsUnexpectedly")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output.find("Unexpected warning: this one is not expected"), std::string::npos) << result.output;
}

}  // namespace
}  // namespace quillon::test
