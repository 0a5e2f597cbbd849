#include "benchmarks/DriverPaths.h"
#include "tests/support/TempDir.h"

#include <QDir>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace quillon {
namespace {

bool begins(const test::TempDir& dir, std::string_view bytes) {
    return beginsAsPdf(QString::fromStdString(dir.write("file", bytes)));
}

TEST(DriverPaths, AnAbsolutePathIsTakenAsItIs) {
    EXPECT_EQ(driverFileUrl(QStringLiteral("/a b/50%.pdf")).toLocalFile(), QStringLiteral("/a b/50%.pdf"));
}

TEST(DriverPaths, AnotherPathCountsFromTheCurrentFolder) {
    EXPECT_EQ(driverFileUrl(QStringLiteral("a.pdf")).toLocalFile(), QDir::currentPath() + QStringLiteral("/a.pdf"));
    EXPECT_EQ(driverFileUrl(QStringLiteral(":a.pdf")).toLocalFile(), QDir::currentPath() + QStringLiteral("/:a.pdf"));
}

TEST(DriverPaths, FourBytesTellAPdf) {
    const test::TempDir dir;
    EXPECT_TRUE(begins(dir, "%PDF-1.4\n"));
    EXPECT_TRUE(begins(dir, "%PDF"));
    EXPECT_FALSE(begins(dir, "%PD"));
    EXPECT_FALSE(begins(dir, " %PDF-1.4"));
    EXPECT_FALSE(begins(dir, "\x89PNG"));
    EXPECT_FALSE(begins(dir, ""));
}

TEST(DriverPaths, WhatIsNoReadableFileIsNoPdf) {
    const test::TempDir dir;
    EXPECT_FALSE(beginsAsPdf(QString::fromStdString(dir.file("missing"))));
    EXPECT_FALSE(beginsAsPdf(QString::fromStdString(dir.path().string())));
    EXPECT_FALSE(beginsAsPdf(QStringLiteral("/dev/null")));
}

TEST(DriverPaths, AFifoIsNotWaitedFor) {
    const test::TempDir dir;
    const auto fifo = dir.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(beginsAsPdf(QString::fromStdString(fifo)));
}

}  // namespace
}  // namespace quillon
