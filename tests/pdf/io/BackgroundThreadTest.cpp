#include "pdf/io/BackgroundThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <pthread.h>
#include <sched.h>
#include <sstream>
#include <string>
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

/// Keeps a thread busy until the end of a test.
class BusyThread {
public:
    BusyThread() : thread_([this] { run(); }) {
        while (id_ == 0) std::this_thread::yield();
    }
    BusyThread(const BusyThread&) = delete;
    BusyThread& operator=(const BusyThread&) = delete;
    ~BusyThread() {
        done_ = true;
        thread_.join();
    }

    [[nodiscard]] std::thread& thread() { return thread_; }
    [[nodiscard]] cpu_set_t allowed() {
        cpu_set_t allowed;
        EXPECT_EQ(::pthread_getaffinity_np(thread_.native_handle(), sizeof allowed, &allowed), 0);
        return allowed;
    }
    void allow(const cpu_set_t& processors) {
        EXPECT_EQ(::pthread_setaffinity_np(thread_.native_handle(), sizeof processors, &processors), 0);
    }
    /// The processor that it runs on, or waits for.
    [[nodiscard]] int processor() const {
        std::ifstream stream("/proc/self/task/" + std::to_string(id_) + "/stat");
        const std::string text(std::istreambuf_iterator<char>(stream), {});
        std::istringstream fields(text.substr(text.rfind(')') + 1));
        constexpr int before = 36;  // that come between the name and the processor
        std::string field;
        for (int i = 0; i < before; ++i) fields >> field;
        int processor = -1;
        fields >> processor;
        return processor;
    }

private:
    void run() {
        id_ = ::gettid();
        while (!done_) {
        }
    }

    std::atomic<pid_t> id_ = 0;
    std::atomic<bool> done_ = false;
    std::thread thread_;
};

cpu_set_t only(int processor) {
    cpu_set_t result;
    CPU_ZERO(&result);
    CPU_SET(static_cast<std::size_t>(processor), &result);
    return result;
}

/// Keeps the calling thread on the processor that it runs on.
class Pinned {
public:
    Pinned() : before_(allowedProcessors()), processor_(::sched_getcpu()) {
        const cpu_set_t here = only(processor_);
        EXPECT_EQ(::sched_setaffinity(0, sizeof here, &here), 0);
    }
    Pinned(const Pinned&) = delete;
    Pinned& operator=(const Pinned&) = delete;
    ~Pinned() { EXPECT_EQ(::sched_setaffinity(0, sizeof before_, &before_), 0); }

    [[nodiscard]] int processor() const { return processor_; }

private:
    cpu_set_t before_;
    int processor_;
};

TEST(BackgroundThread, IsSentAwayFromTheProcessorOfTheCaller) {
    const cpu_set_t all = allowedProcessors();
    if (CPU_COUNT(&all) < 2) GTEST_SKIP() << "there is one processor";
    BusyThread busy;
    int sentAway = 0;
    for (int i = 0; i < 10; ++i) {
        const Pinned caller;
        busy.allow(only(caller.processor()));
        ASSERT_EQ(busy.processor(), caller.processor());
        busy.allow(all);
        sendAway(busy.thread());
        if (busy.processor() != caller.processor()) ++sentAway;
        const cpu_set_t after = busy.allowed();
        EXPECT_TRUE(CPU_EQUAL(&all, &after));
    }
    // Between sending and looking the system may bring it back.
    EXPECT_GE(sentAway, 8);
}

TEST(BackgroundThread, StaysWhereNoOtherProcessorIsAllowed) {
    BusyThread busy;
    const Pinned caller;
    const cpu_set_t here = only(caller.processor());
    busy.allow(here);
    sendAway(busy.thread());
    const cpu_set_t after = busy.allowed();
    EXPECT_TRUE(CPU_EQUAL(&here, &after));
    EXPECT_EQ(busy.processor(), caller.processor());
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

TEST(BackgroundThread, WhatItStartsMayRunOnTheSameProcessors) {
    const cpu_set_t all = allowedProcessors();
    int narrowed = 0;
    for (int i = 0; i < 1000; ++i) {
        backgroundThread([&] {
            backgroundThread([&] {
                const cpu_set_t inner = allowedProcessors();
                if (!CPU_EQUAL(&all, &inner)) ++narrowed;
            }).join();
        }).join();
    }
    EXPECT_EQ(narrowed, 0);
    const cpu_set_t after = allowedProcessors();
    EXPECT_TRUE(CPU_EQUAL(&all, &after));
}

}  // namespace
}  // namespace quillon::pdf
