#include "pdf/io/BackgroundThread.h"

#include <cerrno>
#include <cstddef>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace quillon::pdf {

void giveWay(int steps) noexcept {
    // On Linux niceness belongs to the thread, and is handed down to those that it starts.
    const auto thread = static_cast<id_t>(::gettid());
    errno = 0;
    const int wanted = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid())) + steps;
    const bool gives = ::getpriority(PRIO_PROCESS, thread) < wanted;
    if (errno == 0 && gives) static_cast<void>(::setpriority(PRIO_PROCESS, thread, wanted));
}

void sendAway(std::thread& thread) noexcept {
    const int processor = ::sched_getcpu();
    cpu_set_t allowed;
    if (processor < 0 || processor >= CPU_SETSIZE) return;
    if (::pthread_getaffinity_np(thread.native_handle(), sizeof allowed, &allowed) != 0) return;
    cpu_set_t others = allowed;
    CPU_CLR(static_cast<std::size_t>(processor), &others);
    if (CPU_COUNT(&others) == 0) return;
    if (::pthread_setaffinity_np(thread.native_handle(), sizeof others, &others) != 0) return;
    static_cast<void>(::pthread_setaffinity_np(thread.native_handle(), sizeof allowed, &allowed));
}

}  // namespace quillon::pdf
