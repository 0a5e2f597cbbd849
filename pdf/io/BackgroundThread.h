#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace quillon::pdf {

/// Makes the calling thread give way to the main one, and those that run like it, by `steps` of niceness at least. For
/// threads that work ahead of or behind the one that finds out what is to be done: where processors are few they would
/// only slow that down. A hint: where the system does not allow it, nothing happens.
void giveWay(int steps) noexcept;

/// Moves `thread`, which has just been started or woken, to another processor if it is about to run on the caller's.
/// Threads that take turns look like one to the system, which often leaves them on one processor for milliseconds while
/// another is idle. A hint: the system may bring it back, and nothing happens where no other processor is allowed or
/// when it sleeps. The thread must not end meanwhile, and one that it starts meanwhile might never run on the caller's
/// processor.
void sendAway(std::thread& thread) noexcept;

/// `work` on a thread of its own, which is sent away from the caller's processor before it begins. Throws
/// std::system_error where no thread can be had.
template <class Work>
[[nodiscard]] std::thread backgroundThread(Work work) {
    auto isSentAway = std::make_shared<std::atomic<bool>>(false);
    std::thread thread([isSentAway, work = std::move(work)]() mutable {
        isSentAway->wait(false);
        work();
    });
    sendAway(thread);
    *isSentAway = true;
    isSentAway->notify_one();
    return thread;
}

}  // namespace quillon::pdf
