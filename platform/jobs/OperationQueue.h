#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace quillon {

class Operation;

/// Runs operations one after the other, in the order in which they were added, on one background thread of its own.
///
/// Every operation that is added is run exactly once, cancelled or not. Thread-safe, except that operations themselves
/// must neither wait for their own queue nor destroy it.
class OperationQueue {
public:
    OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    /// Cancels all operations and waits for them, as waitUntilAllOperationsAreFinished does; an operation that is added
    /// while this goes on is cancelled at once. An owner declares its queue after all that the operations call back to,
    /// since calls to the main thread are still delivered here.
    ~OperationQueue();

    /// The queue shares the operation until it has run.
    void addOperation(std::shared_ptr<Operation> operation);

    void cancelAllOperations();

    /// Operations that wait or run.
    [[nodiscard]] std::size_t operationCount() const;

    /// On the main thread functions sent with MainThread::performOnMainThread keep running meanwhile, so that an
    /// operation that waits for the main thread can finish; all that the operations sent have run when it returns.
    void waitUntilAllOperationsAreFinished();

private:
    void run();
    void runNext(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] std::size_t count() const { return waiting_.size() + (busy_ ? 1U : 0U); }

    mutable std::mutex mutex_;  // guards everything below but the thread
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Operation>> waiting_;
    std::shared_ptr<Operation> running_;
    bool busy_ = false;
    bool closing_ = false;  // what is added now is cancelled
    bool stopped_ = false;  // the thread ends
    std::thread thread_;
};

}  // namespace quillon
