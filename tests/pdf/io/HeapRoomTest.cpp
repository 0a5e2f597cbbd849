#include "pdf/io/HeapRoom.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool hasHeaps = false;
#else
constexpr bool hasHeaps = true;
#endif

namespace quillon::pdf {
namespace {

constexpr std::uint64_t large = 64U << 20U;
constexpr std::size_t used = 8U << 20U;
constexpr long few = 32;

class HeapRoomTest : public testing::Test {
protected:
    void SetUp() override {
        if (!hasHeaps) GTEST_SKIP() << "the sanitizer has an allocator of its own";
    }
};

/// How often the system had to give memory to the calling thread so far.
long timesGiven() {
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_minflt;
}

using Blocks = std::vector<std::unique_ptr<char[]>>;

/// Memory in small blocks that have been written to.
Blocks takeMemory() {
    constexpr std::size_t blockBytes = 16U << 10U;
    Blocks blocks(used / blockBytes);
    for (auto& block : blocks) {
        block = std::make_unique_for_overwrite<char[]>(blockBytes);
        std::memset(block.get(), 1, blockBytes);
    }
    return blocks;
}

/// Takes memory and frees it. Returns how often the system had to give some.
long useMemory() {
    const long before = timesGiven();
    const Blocks blocks = takeMemory();
    return timesGiven() - before;
}

/// How often a thread had to be given memory.
struct Uses {
    long first = 0;
    long second = 0;  ///< when it used as much as it had used and freed before
};

Uses useTwice() {
    Uses uses;
    std::thread([&uses] {
        const HeapRoom::Share share;
        uses.first = useMemory();
        uses.second = useMemory();
    }).join();
    return uses;
}

/// Whether memory that is to have large pages has them now.
bool givesLargePages() {
    void* const memory = ::mmap(nullptr, used, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return false;
    ::madvise(memory, used, MADV_HUGEPAGE);
    const long before = timesGiven();
    std::memset(memory, 1, used);
    const long times = timesGiven() - before;
    ::munmap(memory, used);
    return times < static_cast<long>(used) / ::sysconf(_SC_PAGESIZE) / 2;
}

/// KiB of the program's memory that is from no file.
long memoryInUse() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("RssAnon:")) return std::stol(line.substr(8));
    }
    return -1;
}

TEST_F(HeapRoomTest, AHeapKeepsWhatIsFreed) {
    const HeapRoom room(large);
    EXPECT_LT(useTwice().second, few);
}

TEST_F(HeapRoomTest, AHeapHasLargePagesWhereTheSystemGivesThem) {
    if (!givesLargePages()) GTEST_SKIP() << "the system gives none";
    const HeapRoom room(large);
    EXPECT_LT(useTwice().first, static_cast<long>(used) / ::sysconf(_SC_PAGESIZE) * 3 / 4);
}

TEST_F(HeapRoomTest, MemoryGoesBackInTheEnd) {
    const long before = memoryInUse();
    ASSERT_GE(before, 0);
    {
        const HeapRoom room(large);
        std::array<std::thread, 3> threads;
        for (std::thread& thread : threads) {
            thread = std::thread([] {
                const HeapRoom::Share share;
                useMemory();
            });
        }
        useMemory();
        for (std::thread& thread : threads) thread.join();
    }
    constexpr long mostKept = 6 << 10;  // KiB; a large page for each heap, for one
    EXPECT_LT(memoryInUse() - before, mostKept);
}

TEST_F(HeapRoomTest, SoDoesMemoryBetweenWhatIsKept) {
    Blocks blocks;
    const long before = memoryInUse();
    {
        const HeapRoom room(large);
        blocks = takeMemory();
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            if (i % 32 != 31) blocks[i].reset();
        }
    }
    constexpr long mostKept = 4 << 10;  // KiB
    EXPECT_LT(memoryInUse() - before, mostKept);
}

TEST_F(HeapRoomTest, InTheEndHeapsShrinkAgain) {
    { const HeapRoom room(large); }
    EXPECT_GT(useTwice().second, few);
}

TEST_F(HeapRoomTest, LastsAsLongAsAnyOfThem) {
    const HeapRoom room(large);
    { const HeapRoom other(large); }
    EXPECT_LT(useTwice().second, few);
}

TEST_F(HeapRoomTest, ASmallMergeNeitherNeedsNorEndsIt) {
    { const HeapRoom earlier(large); }
    {
        const HeapRoom small(1000);
        EXPECT_GT(useTwice().second, few);
    }
    const HeapRoom room(large);
    { const HeapRoom small(1000); }
    EXPECT_LT(useTwice().second, few);
}

}  // namespace
}  // namespace quillon::pdf
