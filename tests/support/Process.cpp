#include "tests/support/Process.h"

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace quillon::test {
namespace {

constexpr int signalled = 100;
constexpr int threw = 99;

}  // namespace

int inChildProcess(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no process can be made");
    if (child == 0) {
        int code = threw;
        try {
            code = work();
        } catch (const std::exception&) {
            code = threw;
        }
        // The test program's own clean-up is not this process's business.
        ::_exit(code);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status);
}

int asPlainUser(const std::function<int()>& work) {
    return inChildProcess([&work] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) return threw;
        return work();
    });
}

int openDescriptors() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        static_cast<void>(entry);
        ++count;
    }
    return count - 1;  // the iterator's own
}

}  // namespace quillon::test
