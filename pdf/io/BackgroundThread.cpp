#include "pdf/io/BackgroundThread.h"

#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>

namespace quillon::pdf {

void giveWay(int steps) noexcept {
    // On Linux niceness belongs to the thread.
    const auto thread = static_cast<id_t>(::gettid());
    errno = 0;
    const int niceness = ::getpriority(PRIO_PROCESS, thread);
    if (errno == 0) static_cast<void>(::setpriority(PRIO_PROCESS, thread, niceness + steps));
}

}  // namespace quillon::pdf
