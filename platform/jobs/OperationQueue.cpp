#include "platform/jobs/OperationQueue.h"

#include "platform/jobs/MainThread.h"
#include "platform/jobs/Operation.h"

#include <utility>

namespace quillon {

OperationQueue::OperationQueue() : thread_([this] { run(); }) {}

OperationQueue::~OperationQueue() {
    {
        const std::lock_guard lock(mutex_);
        closing_ = true;
    }
    cancelAllOperations();
    waitUntilAllOperationsAreFinished();
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void OperationQueue::addOperation(std::shared_ptr<Operation> operation) {
    {
        const std::lock_guard lock(mutex_);
        if (closing_) operation->cancel();
        waiting_.push_back(std::move(operation));
    }
    changed_.notify_all();
}

void OperationQueue::cancelAllOperations() {
    const std::lock_guard lock(mutex_);
    if (running_) running_->cancel();
    for (const auto& operation : waiting_) operation->cancel();
}

std::size_t OperationQueue::operationCount() const {
    const std::lock_guard lock(mutex_);
    return count();
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
    if (MainThread::isCurrent()) {
        MainThread::waitUntil([this] { return operationCount() == 0; });
        return;
    }
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return count() == 0; });
}

void OperationQueue::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return stopped_ || !waiting_.empty(); });
        if (waiting_.empty()) return;
        runNext(lock);
    }
}

void OperationQueue::runNext(std::unique_lock<std::mutex>& lock) {
    running_ = std::move(waiting_.front());
    waiting_.pop_front();
    busy_ = true;
    lock.unlock();
    // Only this thread changes running_, so it may be read here without the lock.
    running_->main();
    lock.lock();
    std::shared_ptr<Operation> finished = std::exchange(running_, nullptr);
    lock.unlock();
    // Destroyed before it stops counting: whoever waits may tear down what the operation refers to.
    finished.reset();
    lock.lock();
    busy_ = false;
    changed_.notify_all();
    lock.unlock();
    MainThread::recheck();
    lock.lock();
}

}  // namespace quillon
