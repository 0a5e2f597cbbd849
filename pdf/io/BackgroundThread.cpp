#include "pdf/io/BackgroundThread.h"

#include <cerrno>
#include <cstddef>
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

int currentProcessor() noexcept {
    return ::sched_getcpu();
}

void leaveProcessor(int processor) noexcept {
    if (processor < 0 || processor >= CPU_SETSIZE || currentProcessor() != processor) return;
    cpu_set_t allowed;
    if (::sched_getaffinity(0, sizeof allowed, &allowed) != 0) return;
    cpu_set_t others = allowed;
    CPU_CLR(static_cast<std::size_t>(processor), &others);
    if (CPU_COUNT(&others) == 0 || ::sched_setaffinity(0, sizeof others, &others) != 0) return;
    static_cast<void>(::sched_setaffinity(0, sizeof allowed, &allowed));
}

}  // namespace quillon::pdf
