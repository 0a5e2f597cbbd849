#pragma once

#include <atomic>

namespace quillon::pdf {

/// A mutex of one byte, for what there are thousands of and what is seldom asked for by two threads at once. To be used
/// through std::unique_lock and its like.
class SlimMutex {
public:
    void lock() noexcept {
        while (taken_.exchange(true, std::memory_order_acquire)) taken_.wait(true, std::memory_order_relaxed);
    }
    void unlock() noexcept {
        taken_.store(false, std::memory_order_release);
        taken_.notify_one();
    }

private:
    std::atomic<bool> taken_ = false;
};

}  // namespace quillon::pdf
