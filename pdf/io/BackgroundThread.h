#pragma once

#include <thread>
#include <utility>

namespace quillon::pdf {

/// Makes the calling thread give way to the main one, and those that run like it, by `steps` of niceness at least. For
/// threads that work ahead of or behind the one that finds out what is to be done: where processors are few they would
/// only slow that down. A hint: where the system does not allow it, nothing happens.
void giveWay(int steps) noexcept;

/// The processor that the calling thread runs on at the moment; -1 where the system does not say.
[[nodiscard]] int currentProcessor() noexcept;

/// Moves the calling thread to another processor if it runs on `processor`, that of the thread that has woken it.
/// Threads that take turns look like one to the system, which may leave both on one processor while another is idle. A
/// hint: the system may bring it back, and where no other processor is allowed nothing happens.
void leaveProcessor(int processor) noexcept;

/// `work` on a thread of its own, which first leaves the processor of the caller: the system often starts it there, and
/// notices only after milliseconds that another is idle. Throws std::system_error where no thread can be had.
template <class Work>
[[nodiscard]] std::thread backgroundThread(Work work) {
    return std::thread([processor = currentProcessor(), work = std::move(work)] {
        leaveProcessor(processor);
        work();
    });
}

}  // namespace quillon::pdf
