#pragma once

#include <atomic>
#include <memory>

namespace quillon {

/// One piece of background work, run once by an OperationQueue.
///
/// Operations are held by std::shared_ptr: a call that an operation posts to the main thread may be delivered after the
/// queue has let go of it, and keeps it alive until then.
class Operation : public std::enable_shared_from_this<Operation> {
public:
    Operation() = default;
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
    virtual ~Operation() = default;

    /// Asks the operation to stop. It goes on until it looks at isCancelled the next time; nothing takes a cancellation
    /// back. May be called from any thread, before, while and after it runs.
    void cancel() noexcept { cancelled_.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const noexcept { return cancelled_.load(std::memory_order_relaxed); }

    /// The work. Called on the queue's thread, also for an operation that was cancelled before its turn came: what such
    /// an operation still has to do is its own decision. Must not throw.
    virtual void main() = 0;

private:
    std::atomic<bool> cancelled_{false};
};

}  // namespace quillon
