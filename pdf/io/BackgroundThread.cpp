#include "pdf/io/BackgroundThread.h"

#include <cerrno>
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

}  // namespace quillon::pdf
