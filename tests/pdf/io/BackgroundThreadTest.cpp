#include "pdf/io/BackgroundThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <sched.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace quillon::pdf {
namespace {

int niceness() {
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

TEST(BackgroundThread, OnlyTheCallingThreadAndThoseThatItStartsGiveWay) {
    const int before = niceness();
    std::vector<int> inThreads;
    std::thread([&] {
        giveWay(2);
        inThreads.push_back(niceness());
        giveWay(1);
        inThreads.push_back(niceness());
        std::thread([&] {
            giveWay(3);
            inThreads.push_back(niceness());
        }).join();
    }).join();
    const auto below = [&](int steps) { return std::min(before + steps, 19); };
    EXPECT_EQ(inThreads, (std::vector<int>{below(2), below(2), below(3)}));
    EXPECT_EQ(niceness(), before);
}

cpu_set_t allowedProcessors() {
    cpu_set_t allowed;
    EXPECT_EQ(::sched_getaffinity(0, sizeof allowed, &allowed), 0);
    return allowed;
}

TEST(BackgroundThread, LeavesAProcessorAndMayComeBackToIt) {
    const cpu_set_t before = allowedProcessors();
    if (CPU_COUNT(&before) < 2) GTEST_SKIP() << "there is one processor";
    std::thread([&] {
        // Between leaving and looking the system may move the thread itself.
        bool left = false;
        for (int i = 0; i < 100 && !left; ++i) {
            const int processor = currentProcessor();
            ASSERT_GE(processor, 0);
            leaveProcessor(processor);
            left = currentProcessor() != processor;
        }
        EXPECT_TRUE(left);
        const cpu_set_t after = allowedProcessors();
        EXPECT_TRUE(CPU_EQUAL(&before, &after));
    }).join();
}

TEST(BackgroundThread, StaysWhereNoOtherProcessorIsAllowed) {
    std::thread([] {
        cpu_set_t one;
        CPU_ZERO(&one);
        const int processor = currentProcessor();
        ASSERT_GE(processor, 0);
        CPU_SET(static_cast<std::size_t>(processor), &one);
        ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
        leaveProcessor(processor);
        leaveProcessor(-1);
        const cpu_set_t after = allowedProcessors();
        EXPECT_TRUE(CPU_EQUAL(&one, &after));
        EXPECT_EQ(currentProcessor(), processor);
    }).join();
}

TEST(BackgroundThread, WorksOnAThreadOfItsOwnWithTheProcessorsOfTheCaller) {
    const cpu_set_t before = allowedProcessors();
    std::thread::id worker;
    cpu_set_t inThread;
    backgroundThread([&] {
        worker = std::this_thread::get_id();
        inThread = allowedProcessors();
    }).join();
    EXPECT_NE(worker, std::thread::id());
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_TRUE(CPU_EQUAL(&before, &inThread));
}

}  // namespace
}  // namespace quillon::pdf
