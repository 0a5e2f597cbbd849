#include "pdf/io/HeapRoom.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool hasHeaps = false;
#else
constexpr bool hasHeaps = true;
#endif

namespace quillon::pdf {
namespace {

constexpr std::uint64_t large = 64U << 20U;

class HeapRoomTest : public testing::Test {
protected:
    void SetUp() override {
        if (!hasHeaps) GTEST_SKIP() << "the sanitizer has an allocator of its own";
    }
};

/// Allocates 4 MiB in small blocks, writes to them and frees them. Returns how often the system had to give memory.
long useMemory() {
    const auto given = [] {
        rusage usage{};
        ::getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_minflt;
    };
    constexpr std::size_t blockBytes = 16U << 10U;
    std::vector<std::unique_ptr<char[]>> blocks(256);
    const long before = given();
    for (auto& block : blocks) {
        block = std::make_unique_for_overwrite<char[]>(blockBytes);
        std::memset(block.get(), 1, blockBytes);
    }
    return given() - before;
}

/// How often a thread had to be given memory.
struct Uses {
    long first = 0;
    long second = 0;  ///< when it used as much as it had used and freed before
};

Uses useTwice() {
    Uses uses;
    std::thread([&uses] {
        HeapRoom::take();
        uses.first = useMemory();
        uses.second = useMemory();
    }).join();
    return uses;
}

constexpr long few = 32;

TEST_F(HeapRoomTest, AHeapKeepsWhatIsFreed) {
    const HeapRoom room(large);
    EXPECT_LT(useTwice().second, few);
}

TEST_F(HeapRoomTest, AHeapHasLargePagesWhereTheSystemGivesThem) {
    std::string enabled;
    std::getline(std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled"), enabled);
    if (enabled.empty() || enabled.ends_with("[never]")) GTEST_SKIP() << "the system gives none";
    const HeapRoom room(large);
    constexpr long smallPages = 1024;
    EXPECT_LT(useTwice().first, smallPages * 3 / 4);
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
