#include "pdf/io/InputFile.h"
#include "tests/support/Process.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace quillon::pdf {
namespace {

std::string readAll(InputFile& file, std::size_t wanted = 100, std::uint64_t offset = 0) {
    std::string text(wanted, '\0');
    text.resize(file.readAt(offset, text));
    return text;
}

TEST(InputFile, ReadsAtAnyOffset) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", "0123456789"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 10U);
    EXPECT_EQ(readAll(*file), "0123456789");
    EXPECT_EQ(readAll(*file, 3, 4), "456");
    EXPECT_EQ(readAll(*file, 3, 9), "9");
    EXPECT_EQ(readAll(*file, 3, 10), "");
    EXPECT_EQ(readAll(*file, 3, UINT64_MAX / 2), "");
}

TEST(InputFile, AnEmptyFileCanBeOpened) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", ""));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 0U);
}

TEST(InputFile, WhatIsNoRegularFileIsRefusedWithoutWaiting) {
    const test::TempDir dir;
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(InputFile::open(dir.file("fifo")));  // would wait for a writer if it were opened
    EXPECT_FALSE(InputFile::open(dir.path().string()));
    EXPECT_FALSE(InputFile::open("/dev/null"));
    EXPECT_FALSE(InputFile::open("/dev/zero"));
    EXPECT_FALSE(InputFile::open(dir.file("missing")));
    EXPECT_FALSE(InputFile::open(""));
    EXPECT_FALSE(InputFile::identityOf(dir.file("fifo")));
}

TEST(InputFile, ALinkIsFollowed) {
    const test::TempDir dir;
    dir.write("a", "text");
    std::filesystem::create_symlink("a", dir.file("link"));
    std::filesystem::create_symlink("loop", dir.file("loop"));
    EXPECT_TRUE(InputFile::open(dir.file("link")));
    EXPECT_FALSE(InputFile::open(dir.file("loop")));
}

TEST(InputFile, AFileThatMayNotBeReadIsRefused) {
    const test::TempDir dir;
    const std::string open = dir.write("open", "text");
    const std::string closed = dir.write("closed", "text");
    ASSERT_EQ(::chmod(dir.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(open.c_str(), 0644), 0);
    ASSERT_EQ(::chmod(closed.c_str(), 0), 0);
    EXPECT_EQ(test::asPlainUser([&] { return InputFile::open(open) ? 0 : 1; }), 0);
    EXPECT_EQ(test::asPlainUser([&] { return InputFile::open(closed) ? 0 : 1; }), 1);
}

TEST(InputFile, EqualIdentitiesMeanEqualBytes) {
    const test::TempDir dir;
    const std::string path = dir.write("a", "text");
    std::filesystem::create_hard_link(path, dir.file("b"));
    const auto before = InputFile::identityOf(path);
    EXPECT_EQ(InputFile::identityOf(dir.file("b")), before);
    EXPECT_EQ(InputFile::open(path)->identity(), before);
    dir.write("a", "longer text");
    EXPECT_NE(InputFile::identityOf(path), before);
}

TEST(InputFile, AFileCutShortGivesAShortRead) {
    const test::TempDir dir;
    const std::string path = dir.write("a", std::string(100'000, 'x'));
    const auto file = InputFile::open(path);
    std::filesystem::resize_file(path, 10);
    EXPECT_EQ(readAll(*file, 100), std::string(10, 'x'));
}

/// Opens so many other files that the descriptor of those opened before is closed.
std::vector<std::shared_ptr<InputFile>> openOthers(const test::TempDir& dir) {
    std::vector<std::shared_ptr<InputFile>> others;
    for (std::size_t i = 0; i <= OpenFiles::limit; ++i) {
        others.push_back(InputFile::open(dir.write("other" + std::to_string(i), std::to_string(i))));
    }
    return others;
}

TEST(InputFile, AFileReplacedWhileItsDescriptorWasClosedIsNotRead) {
    const test::TempDir dir;
    const std::string path = dir.write("a", "old text");
    const auto file = InputFile::open(path);
    const auto others = openOthers(dir);
    std::filesystem::rename(dir.write("b", "new text"), path);
    EXPECT_EQ(readAll(*file), "");
    EXPECT_EQ(readAll(*InputFile::open(path)), "new text");
}

TEST(InputFile, AFileRemovedWhileItsDescriptorWasClosedIsNotRead) {
    const test::TempDir dir;
    const std::string path = dir.write("a", "text");
    const auto file = InputFile::open(path);
    const auto others = openOthers(dir);
    std::filesystem::remove(path);
    EXPECT_EQ(readAll(*file), "");
}

TEST(InputFile, ADescriptorThatWasClosedIsOpenedAgain) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", "text"));
    const auto others = openOthers(dir);
    EXPECT_EQ(readAll(*file), "text");
}

TEST(InputFile, ManyFilesKeepFewDescriptorsOpen) {
    const test::TempDir dir;
    const int before = test::openDescriptors();
    std::vector<std::shared_ptr<InputFile>> files;
    for (int i = 0; i < 200; ++i) {
        files.push_back(InputFile::open(dir.write("f" + std::to_string(i), std::to_string(i))));
        ASSERT_LE(test::openDescriptors() - before, static_cast<int>(OpenFiles::limit));
    }
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(readAll(*files[static_cast<std::size_t>(i * 77 % 200)]), std::to_string(i * 77 % 200));
        ASSERT_LE(test::openDescriptors() - before, static_cast<int>(OpenFiles::limit));
    }
    files.clear();
    EXPECT_EQ(test::openDescriptors(), before);
}

}  // namespace
}  // namespace quillon::pdf
