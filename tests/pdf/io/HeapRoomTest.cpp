#include "pdf/io/HeapRoom.h"
#include "tests/support/Sanitizer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace quillon::pdf {
namespace {

constexpr std::uint64_t large = 64U << 20U;
constexpr std::size_t used = 8U << 20U;
constexpr long few = 32;

class HeapRoomTest : public testing::Test {
protected:
    void SetUp() override {
        if (test::isSanitized) GTEST_SKIP() << "the sanitizer has an allocator of its own";
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

/// How often a thread has to be given memory when it uses as much as it has used and freed before.
long useAgain() {
    long times = 0;
    std::thread([&times] {
        const HeapRoom::Share share;
        useMemory();
        times = useMemory();
    }).join();
    return times;
}

/// KiB of the program's memory that is in use and from no file.
long memoryInUse() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("RssAnon:")) return std::stol(line.substr(8));
    }
    ADD_FAILURE() << "the system does not say";
    return 0;
}

TEST_F(HeapRoomTest, AHeapKeepsWhatIsFreed) {
    const HeapRoom room(large);
    EXPECT_LT(useAgain(), few);
}

TEST_F(HeapRoomTest, MemoryGoesBackInTheEnd) {
    const long before = memoryInUse();
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
    constexpr long mostKept = 4 << 10;  // KiB
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
    EXPECT_GT(useAgain(), few);
}

TEST_F(HeapRoomTest, LastsAsLongAsAnyOfThem) {
    const HeapRoom room(large);
    { const HeapRoom other(large); }
    EXPECT_LT(useAgain(), few);
}

TEST_F(HeapRoomTest, ASmallMergeNeitherNeedsNorEndsIt) {
    { const HeapRoom earlier(large); }
    {
        const HeapRoom small(1000);
        EXPECT_GT(useAgain(), few);
    }
    const HeapRoom room(large);
    { const HeapRoom small(1000); }
    EXPECT_LT(useAgain(), few);
}

}  // namespace
}  // namespace quillon::pdf
