#include "platform/jobs/MainThread.h"
#include "platform/jobs/Operation.h"
#include "platform/jobs/OperationQueue.h"

#include <QEventLoop>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace quillon {
namespace {

class Job final : public Operation {
public:
    explicit Job(std::function<void(Job&)> work, std::function<void()> atEnd = {})
        : work_(std::move(work)), atEnd_(std::move(atEnd)) {}
    ~Job() override {
        if (atEnd_) atEnd_();
    }
    void main() override { work_(*this); }

private:
    std::function<void(Job&)> work_;
    std::function<void()> atEnd_;
};

std::shared_ptr<Job> job(std::function<void(Job&)> work) {
    return std::make_shared<Job>(std::move(work));
}

/// Runs until it is cancelled.
void untilCancelled(Job& self) {
    while (!self.isCancelled()) std::this_thread::yield();
}

TEST(Operation, IsCancelledOnceItWasCancelled) {
    const auto one = job([](Job&) {});
    EXPECT_FALSE(one->isCancelled());
    one->cancel();
    EXPECT_TRUE(one->isCancelled());
}

TEST(OperationQueue, RunsAnOperationOnAThreadOfItsOwn) {
    OperationQueue queue;
    std::thread::id thread;
    queue.addOperation(job([&thread](Job&) { thread = std::this_thread::get_id(); }));
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_NE(thread, std::thread::id());
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(OperationQueue, RunsOneOperationAfterTheOther) {
    OperationQueue queue;
    std::string order;
    for (const char c : {'a', 'b', 'c'}) {
        queue.addOperation(job([&order, c](Job&) {
            order += c;
            std::this_thread::yield();
            order += c;
        }));
    }
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(order, "aabbcc");
}

TEST(OperationQueue, CountsWhatWaitsAndRuns) {
    OperationQueue queue;
    EXPECT_EQ(queue.operationCount(), 0U);
    std::promise<void> go;
    auto gone = go.get_future().share();
    queue.addOperation(job([gone](Job&) { gone.wait(); }));
    queue.addOperation(job([](Job&) {}));
    EXPECT_EQ(queue.operationCount(), 2U);
    go.set_value();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, CancelReachesTheRunningOperationAndThoseThatWait) {
    OperationQueue queue;
    const auto running = job(untilCancelled);
    const auto waiting = job(untilCancelled);
    queue.addOperation(running);
    queue.addOperation(waiting);
    queue.cancelAllOperations();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(running->isCancelled());
    EXPECT_TRUE(waiting->isCancelled());
}

TEST(OperationQueue, AnOperationThatWasCancelledBeforeItsTurnRunsOnceAndSeesIt) {
    OperationQueue queue;
    int runs = 0;
    bool seen = false;
    const auto one = job([&](Job& self) {
        ++runs;
        seen = self.isCancelled();
    });
    one->cancel();
    queue.addOperation(one);
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(seen);
}

TEST(OperationQueue, WorksAgainAfterACancellation) {
    OperationQueue queue;
    queue.addOperation(job(untilCancelled));
    queue.cancelAllOperations();
    bool cancelled = true;
    queue.addOperation(job([&cancelled](Job& self) { cancelled = self.isCancelled(); }));
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_FALSE(cancelled);
}

TEST(OperationQueue, AnOperationIsGoneWhenWaitingForItIsOver) {
    OperationQueue queue;
    std::atomic<bool> gone{false};
    queue.addOperation(std::make_shared<Job>([](Job&) {}, [&gone] { gone = true; }));
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(gone);
}

TEST(OperationQueue, AnotherThreadMayWaitToo) {
    OperationQueue queue;
    std::promise<void> go;
    auto gone = go.get_future().share();
    queue.addOperation(job([gone](Job&) { gone.wait(); }));
    std::size_t left = 99;
    std::thread other([&] {
        queue.waitUntilAllOperationsAreFinished();
        left = queue.operationCount();
    });
    go.set_value();
    other.join();
    EXPECT_EQ(left, 0U);
}

TEST(OperationQueue, AJobThatCallsTheMainThreadFinishesInTheEventLoop) {
    OperationQueue queue;
    QEventLoop loop;
    std::string order;
    queue.addOperation(job([&](Job&) {
        MainThread::performOnMainThread([&order] { order += "start "; }, true);
        order += "work ";
        MainThread::performOnMainThread([&loop] { loop.quit(); }, false);
    }));
    loop.exec();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(order, "start work ");
}

TEST(OperationQueue, WaitingOnTheMainThreadDeliversWhatTheOperationsSend) {
    OperationQueue queue;
    std::string order;
    queue.addOperation(job([&order](Job&) {
        MainThread::performOnMainThread([&order] { order += "waited "; }, true);
        MainThread::performOnMainThread([&order] { order += "posted"; }, false);
    }));
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(order, "waited posted");
}

TEST(OperationQueue, DestructionCancelsAndWaits) {
    std::atomic<bool> ended{false};
    std::optional<OperationQueue> queue(std::in_place);
    queue->addOperation(job([&ended](Job& self) {
        untilCancelled(self);
        ended = true;
    }));
    queue.reset();
    EXPECT_TRUE(ended);
}

TEST(OperationQueue, DestructionLetsAJobFinishThatWaitsForTheMainThread) {
    std::string order;
    std::optional<OperationQueue> queue(std::in_place);
    queue->addOperation(job([&order](Job& self) {
        untilCancelled(self);
        MainThread::performOnMainThread([&order] { order += "waited "; }, true);
        MainThread::performOnMainThread([&order] { order += "posted"; }, false);
    }));
    queue.reset();
    EXPECT_EQ(order, "waited posted");
}

TEST(OperationQueue, AnOperationAddedDuringDestructionRunsCancelled) {
    bool ran = false;
    bool cancelled = false;
    std::optional<OperationQueue> queue(std::in_place);
    // A pointer, since the optional counts as empty while its value is destroyed.
    OperationQueue* const inside = &*queue;
    queue->addOperation(job([&, inside](Job& self) {
        untilCancelled(self);
        MainThread::performOnMainThread(
            [&, inside] {
                inside->addOperation(job([&](Job& late) {
                    ran = true;
                    cancelled = late.isCancelled();
                }));
            },
            true);
    }));
    queue.reset();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(cancelled);
}

TEST(OperationQueue, DestructionOnAnotherThreadWorksToo) {
    auto queue = std::make_unique<OperationQueue>();
    std::atomic<bool> ended{false};
    queue->addOperation(job([&ended](Job& self) {
        untilCancelled(self);
        ended = true;
    }));
    std::thread([&queue] { queue.reset(); }).join();
    EXPECT_TRUE(ended);
}

}  // namespace
}  // namespace quillon
