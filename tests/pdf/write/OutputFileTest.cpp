#include "pdf/write/OutputFile.h"
#include "tests/support/Process.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <linux/magic.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <vector>

namespace {

bool fallsShort = false;
std::vector<off_t>* ends = nullptr;  // where what is written at one go ends, if a test asks

/// What takes and gives back disk space, instead of the system, and the file system that it is on.
struct DiskSpace {
    decltype(statfs::f_type) fileSystem = EXT4_SUPER_MAGIC;
    int error = 0;                   // of taking it
    bool keeps = false;              // fails to give it back
    std::vector<off_t> taken{};      // where each piece that was asked for ends
    std::vector<off_t> truncated{};  // lengths
};

DiskSpace* diskSpace = nullptr;  // if a test asks

}  // namespace

extern "C" int fallocate(int descriptor, int mode, off_t offset, off_t length) {
    if (!diskSpace) return static_cast<int>(::syscall(SYS_fallocate, descriptor, mode, offset, length));
    EXPECT_EQ(mode, FALLOC_FL_KEEP_SIZE);
    EXPECT_EQ(offset, diskSpace->taken.empty() ? 0 : diskSpace->taken.back());
    diskSpace->taken.push_back(offset + length);
    if (diskSpace->error == 0) return 0;
    errno = diskSpace->error;
    return -1;
}

extern "C" int ftruncate(int descriptor, off_t length) noexcept {
    if (!diskSpace) return static_cast<int>(::syscall(SYS_ftruncate, descriptor, length));
    diskSpace->truncated.push_back(length);
    if (!diskSpace->keeps) return 0;
    errno = EIO;
    return -1;
}

extern "C" int fstatfs(int descriptor, struct statfs* status) noexcept {
    const auto result = static_cast<int>(::syscall(SYS_fstatfs, descriptor, status));
    if (diskSpace) status->f_type = diskSpace->fileSystem;
    return result;
}

/// Stands for the system's in this program, and on demand is interrupted and writes less than it might, in turn.
extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
    static unsigned calls = 0;
    constexpr std::size_t most = 50'000;
    if (!fallsShort) {
        const ssize_t written = ::syscall(SYS_writev, descriptor, parts, count);
        if (ends) ends->push_back(::lseek(descriptor, 0, SEEK_CUR));
        return written;
    }
    if (++calls % 2 == 0) {
        errno = EINTR;
        return -1;
    }
    const iovec& part = parts[0].iov_len != 0 ? parts[0] : parts[1];
    return ::write(descriptor, part.iov_base, std::min(part.iov_len, most));
}

namespace quillon::pdf {
namespace {

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

int filesIn(const std::filesystem::path& folder) {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

bool writeText(const std::string& target, std::string_view text, bool sync = true) {
    const auto file = OutputFile::create(target);
    return file && file->write(text) && file->commit(sync);
}

TEST(OutputFile, MakesANewFile) {
    const test::TempDir dir;
    EXPECT_TRUE(writeText(dir.file("a"), "text"));
    EXPECT_EQ(contentOf(dir.file("a")), "text");
    EXPECT_EQ(filesIn(dir.path()), 1);
}

TEST(OutputFile, ReplacesAFile) {
    const test::TempDir dir;
    EXPECT_TRUE(writeText(dir.write("a", "old and longer"), "new", false));
    EXPECT_EQ(contentOf(dir.file("a")), "new");
    EXPECT_EQ(filesIn(dir.path()), 1);
}

TEST(OutputFile, CountsTheBytes) {
    const test::TempDir dir;
    const auto file = OutputFile::create(dir.file("a"));
    EXPECT_TRUE(file->write("abc"));
    EXPECT_TRUE(file->write(""));
    EXPECT_TRUE(file->write("de"));
    EXPECT_EQ(file->size(), 5U);
}

class LittleAndMuch : public testing::TestWithParam<bool> {
protected:
    void SetUp() override { fallsShort = GetParam(); }
    void TearDown() override { fallsShort = false; }
};

INSTANTIATE_TEST_SUITE_P(OutputFile, LittleAndMuch, testing::Bool());

TEST_P(LittleAndMuch, ComeOutInTheirOrder) {
    const test::TempDir dir;
    const auto file = OutputFile::create(dir.file("a"));
    std::string expected;
    char label = 'a';
    for (const std::size_t length : {3U, 70'000U, 0U, 40'000U, 40'000U, 1U, 65'536U, 65'535U, 1U, 5U}) {
        const std::string data(length, label++);
        EXPECT_TRUE(file->write(data));
        expected += data;
        EXPECT_EQ(file->size(), expected.size());
    }
    EXPECT_TRUE(file->commit(true));
    EXPECT_EQ(contentOf(dir.file("a")), expected);
}

TEST(OutputFile, IsWrittenUpToMultiplesOfItsAlignment) {
    const test::TempDir dir;
    const auto file = OutputFile::create(dir.file("a"));
    std::vector<off_t> seen;
    ends = &seen;
    std::string expected;
    const auto write = [&](std::size_t length) {
        const std::string data(length, static_cast<char>('a' + expected.size() % 26));
        EXPECT_TRUE(file->write(data));
        expected += data;
    };
    for (int i = 0; i < 40; ++i) write(30'001);
    write(300'000);
    EXPECT_GE(seen.size(), 10U);
    for (const off_t end : seen) EXPECT_EQ(end % (64 << 10), 0) << end;
    // What is flushed ends anywhere; some way behind it, it is as before.
    EXPECT_TRUE(file->flush());
    EXPECT_EQ(seen.back(), static_cast<off_t>(expected.size()));
    for (int i = 0; i < 20; ++i) write(6'000);
    EXPECT_EQ(seen.back() % (64 << 10), 0);
    EXPECT_TRUE(file->commit(false));
    ends = nullptr;
    EXPECT_EQ(contentOf(dir.file("a")), expected);
}

/// Writes a file of that many bytes in pieces, and returns what it did to the disk.
DiskSpace spaceFor(off_t length, DiskSpace space) {
    const test::TempDir dir;
    diskSpace = &space;
    std::vector<off_t> seen;
    ends = &seen;
    const auto file = OutputFile::create(dir.file("a"));
    constexpr off_t mostAtATime = 100'000;
    for (off_t left = length; left > 0; left -= mostAtATime) {
        EXPECT_TRUE(file->write(std::string(static_cast<std::size_t>(std::min(left, mostAtATime)), 'x')));
        if (!seen.empty() && !space.taken.empty() && space.error == 0) {
            EXPECT_LE(seen.back(), space.taken.back());
        }
    }
    EXPECT_TRUE(file->commit(false));
    ends = nullptr;
    diskSpace = nullptr;
    EXPECT_EQ(contentOf(dir.file("a")), std::string(static_cast<std::size_t>(length), 'x'));
    return space;
}

TEST(OutputFile, TakesDiskSpaceAheadOnExt4) {
    const DiskSpace space = spaceFor(20'000'000, {});
    constexpr off_t step = 8 << 20;
    EXPECT_EQ(space.taken, (std::vector<off_t>{step, 2 * step, 3 * step}));
    EXPECT_EQ(space.truncated, std::vector<off_t>{20'000'000});
}

TEST(OutputFile, IsWrittenAllTheSameWhereNoDiskSpaceCanBeTakenAhead) {
    const DiskSpace space = spaceFor(20'000'000, {.error = ENOSPC});
    EXPECT_EQ(space.taken.size(), 1U);
    EXPECT_EQ(space.truncated, std::vector<off_t>{20'000'000});
}

TEST(OutputFile, DiskSpaceThatCannotBeGivenBackIsNoFailure) {
    EXPECT_EQ(spaceFor(1'000'000, {.keeps = true}).truncated, std::vector<off_t>{1'000'000});
}

TEST(OutputFile, TakesNoDiskSpaceAheadForASmallFileOrElsewhere) {
    const DiskSpace small = spaceFor(60'000, {});
    EXPECT_TRUE(small.taken.empty() && small.truncated.empty());
    const DiskSpace elsewhere = spaceFor(20'000'000, {.fileSystem = TMPFS_MAGIC});
    EXPECT_TRUE(elsewhere.taken.empty() && elsewhere.truncated.empty());
}

TEST(OutputFile, KeepsNoDiskSpaceThatItDoesNotFill) {
    const test::TempDir dir;
    constexpr off_t length = 9'000'000;
    EXPECT_TRUE(writeText(dir.file("a"), std::string(length, 'x')));
    struct stat status {};
    ASSERT_EQ(::stat(dir.file("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, length);
    constexpr off_t blockBytes = 512;
    constexpr off_t mostSurplus = 100'000;
    EXPECT_LT(status.st_blocks * blockBytes, length + mostSurplus);
}

TEST(OutputFile, NothingIsSeenBeforeTheCommitAndNothingIsLeftWithoutOne) {
    const test::TempDir dir;
    const std::string target = dir.write("a", "old");
    {
        const auto file = OutputFile::create(target);
        EXPECT_TRUE(file->write("new"));
        EXPECT_EQ(contentOf(target), "old");
    }
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(filesIn(dir.path()), 1);
}

TEST(OutputFile, AMissingFolderIsRefused) {
    const test::TempDir dir;
    EXPECT_FALSE(OutputFile::create(dir.file("missing/a")));
    EXPECT_EQ(filesIn(dir.path()), 0);
}

TEST(OutputFile, ATargetThatIsNoFileIsRefusedAndStays) {
    const test::TempDir dir;
    std::filesystem::create_directory(dir.file("folder"));
    ASSERT_EQ(::mkfifo(dir.file("fifo").c_str(), 0600), 0);
    EXPECT_FALSE(OutputFile::create(dir.file("folder")));
    EXPECT_FALSE(OutputFile::create(dir.file("fifo")));
    EXPECT_FALSE(OutputFile::create("/dev/null"));
    EXPECT_TRUE(std::filesystem::is_directory(dir.file("folder")));
    EXPECT_TRUE(std::filesystem::is_fifo(dir.file("fifo")));
    EXPECT_EQ(filesIn(dir.path()), 2);
}

TEST(OutputFile, ALinkStaysAndTheFileBehindItIsReplaced) {
    const test::TempDir dir;
    std::filesystem::create_directory(dir.file("other"));
    dir.write("other/a", "old");
    std::filesystem::create_symlink("other/a", dir.file("link"));
    EXPECT_TRUE(writeText(dir.file("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(dir.file("link")));
    EXPECT_EQ(contentOf(dir.file("other/a")), "new");
}

TEST(OutputFile, KeepsThePermissionsOfTheTarget) {
    const test::TempDir dir;
    const std::string target = dir.write("a", "old");
    std::filesystem::permissions(target, std::filesystem::perms{0640});
    EXPECT_TRUE(writeText(target, "new"));
    EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms{0640});
}

TEST(OutputFile, ANewFileHasThePermissionsThatTheUserWants) {
    const test::TempDir dir;
    const mode_t old = ::umask(027);
    const bool written = writeText(dir.file("a"), "new");
    ::umask(old);
    EXPECT_TRUE(written);
    EXPECT_EQ(std::filesystem::status(dir.file("a")).permissions(), std::filesystem::perms{0640});
}

TEST(OutputFile, AFileThatMayNotBeWrittenIsRefusedAndStays) {
    const test::TempDir dir;
    const std::string target = dir.write("a", "old");
    ASSERT_EQ(::chmod(dir.path().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(target.c_str(), 0444), 0);
    EXPECT_EQ(test::asPlainUser([&] { return writeText(target, "new") ? 0 : 1; }), 1);
    EXPECT_EQ(test::asPlainUser([&] { return writeText(dir.file("b"), "new") ? 0 : 1; }), 0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(filesIn(dir.path()), 2);
}

TEST(OutputFile, AFolderThatMayNotBeWrittenIsRefused) {
    const test::TempDir dir;
    ASSERT_EQ(::chmod(dir.path().c_str(), 0555), 0);
    EXPECT_EQ(test::asPlainUser([&] { return writeText(dir.file("a"), "new") ? 0 : 1; }), 1);
    ASSERT_EQ(::chmod(dir.path().c_str(), 0755), 0);
    EXPECT_EQ(filesIn(dir.path()), 0);
}

/// Runs `write`, which returns 0 if all is as it should be, where a file can hold no more than `room` bytes, and
/// expects the old file to stay and nothing to be left.
void withRoomFor(rlim_t room, const std::function<int(OutputFile&)>& write) {
    const test::TempDir dir;
    const std::string target = dir.write("a", "old");
    const int result = test::inChildProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{room, room};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 99;
        const auto file = OutputFile::create(target);
        return file ? write(*file) : 98;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(filesIn(dir.path()), 1);
}

TEST(OutputFile, WhereTheDiskIsFullTheOldFileStaysAndNothingIsLeft) {
    withRoomFor(100'000, [](OutputFile& file) {
        if (!file.write(std::string(100'000, 'x'))) return 8;
        if (file.write(std::string(70'000, 'y'))) return 7;
        if (file.write("") || file.flush()) return 6;  // it stays failed
        return file.commit(true) ? 5 : 0;
    });
}

TEST(OutputFile, ADiskThatFillsUpInTheMiddleIsAFailure) {
    withRoomFor(100'000, [](OutputFile& file) {
        if (!file.write(std::string(60'000, 'x'))) return 8;  // gathered
        return file.write(std::string(80'000, 'y')) || file.commit(true) ? 7 : 0;
    });
}

TEST(OutputFile, WhatWasGatheredMayStillFail) {
    withRoomFor(100, [](OutputFile& file) {
        if (!file.write(std::string(101, 'x'))) return 8;
        return file.flush() || file.commit(true) ? 7 : 0;
    });
    withRoomFor(100, [](OutputFile& file) {
        if (!file.write(std::string(101, 'x'))) return 8;
        return file.commit(true) ? 7 : 0;
    });
}

}  // namespace
}  // namespace quillon::pdf
