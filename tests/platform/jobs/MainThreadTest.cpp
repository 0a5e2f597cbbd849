#include "platform/jobs/MainThread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quillon {
namespace {

TEST(MainThread, KnowsTheMainThread) {
    EXPECT_TRUE(MainThread::isCurrent());
    bool elsewhere = true;
    std::thread([&elsewhere] { elsewhere = MainThread::isCurrent(); }).join();
    EXPECT_FALSE(elsewhere);
}

TEST(MainThread, WaitingOnTheMainThreadRunsDirectly) {
    bool ran = false;
    MainThread::performOnMainThread([&ran] { ran = true; }, true);
    EXPECT_TRUE(ran);
}

TEST(MainThread, WithoutWaitingTheFunctionRunsLaterInTheEventLoop) {
    bool ran = false;
    MainThread::performOnMainThread([&ran] { ran = true; }, false);
    EXPECT_FALSE(ran);
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran);
}

TEST(MainThread, AWaitingCallFromElsewhereReturnsAfterTheFunctionHasRunOnTheMainThread) {
    QEventLoop loop;
    bool onMainThread = false;
    bool ranBeforeReturn = false;
    std::thread other([&] {
        bool ran = false;
        MainThread::performOnMainThread(
            [&] {
                onMainThread = MainThread::isCurrent();
                ran = true;
            },
            true);
        ranBeforeReturn = ran;
        MainThread::performOnMainThread([&loop] { loop.quit(); }, false);
    });
    loop.exec();
    other.join();
    EXPECT_TRUE(onMainThread);
    EXPECT_TRUE(ranBeforeReturn);
}

TEST(MainThread, FunctionsRunInTheOrderInWhichTheyWereSent) {
    QEventLoop loop;
    std::string order;
    std::thread other([&] {
        for (const char c : {'a', 'b', 'c'}) MainThread::performOnMainThread([&order, c] { order += c; }, false);
        MainThread::performOnMainThread([&order] { order += 'd'; }, true);
        MainThread::performOnMainThread([&loop] { loop.quit(); }, false);
    });
    loop.exec();
    other.join();
    EXPECT_EQ(order, "abcd");
}

TEST(MainThread, WhileItWaitsItRunsWhatArrives) {
    std::atomic<bool> finished{false};
    int ran = 0;
    std::thread other([&] {
        for (int i = 0; i < 100; ++i) MainThread::performOnMainThread([&ran] { ++ran; }, true);
        finished = true;
        MainThread::recheck();
    });
    MainThread::waitUntil([&finished] { return finished.load(); });
    other.join();
    EXPECT_EQ(ran, 100);
}

TEST(MainThread, WaitingIsOverOnlyAfterWhatHasArrivedHasRun) {
    int ran = 0;
    MainThread::performOnMainThread([&ran] { ++ran; }, false);
    MainThread::performOnMainThread([&ran] { ++ran; }, false);
    MainThread::waitUntil([] { return true; });
    EXPECT_EQ(ran, 2);
    // Their events are still on the way, and find nothing to do.
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, 2);
}

TEST(MainThread, AFunctionMayWaitItself) {
    std::string order;
    MainThread::performOnMainThread(
        [&order] {
            order += 'a';
            MainThread::waitUntil([] { return true; });
            order += 'c';
        },
        false);
    MainThread::performOnMainThread([&order] { order += 'b'; }, false);
    MainThread::waitUntil([] { return true; });
    EXPECT_EQ(order, "abc");
}

TEST(MainThread, LetsGoOfTheFunctionBeforeAWaitingCallerMovesOn) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = held;
    std::atomic<bool> finished{false};
    bool gone = false;
    std::thread other([&, held = std::move(held)]() mutable {
        MainThread::performOnMainThread([held = std::move(held)] { (void)held; }, true);
        gone = watch.expired();
        finished = true;
        MainThread::recheck();
    });
    MainThread::waitUntil([&finished] { return finished.load(); });
    other.join();
    EXPECT_TRUE(gone);
}

TEST(MainThread, ManyThreadsMayCallAtOnce) {
    constexpr int threadCount = 4;
    constexpr int callCount = 200;
    std::atomic<int> running{threadCount};
    int ran = 0;  // not atomic: only the main thread counts
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < callCount; ++i) MainThread::performOnMainThread([&ran] { ++ran; }, i % 2 == 0);
            --running;
            MainThread::recheck();
        });
    }
    MainThread::waitUntil([&running] { return running.load() == 0; });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(ran, threadCount * callCount);
}

}  // namespace
}  // namespace quillon
