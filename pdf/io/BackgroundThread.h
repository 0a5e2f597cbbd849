#pragma once

#include <thread>
#include <utility>

namespace quillon::pdf {

/// Makes the calling thread give way to the main one, and those that run like it, by `steps` of niceness at least. For
/// threads that work ahead of or behind the one that finds out what is to be done: where processors are few they would
/// only slow that down. A hint: where the system does not allow it, nothing happens.
void giveWay(int steps) noexcept;

/// Moves `thread`, which has just been started or woken, to another processor if it is about to run on the caller's.
/// Threads that take turns look like one to the system, which often leaves them on one processor for milliseconds while
/// another is idle. A hint: the system may bring it back, and where no other processor is allowed nothing happens.
void sendAway(std::thread& thread) noexcept;

/// `work` on a thread of its own, on another processor than the caller's where there is one. Throws std::system_error
/// where no thread can be had.
template <class Work>
[[nodiscard]] std::thread backgroundThread(Work work) {
    std::thread thread(std::move(work));
    sendAway(thread);
    return thread;
}

}  // namespace quillon::pdf
