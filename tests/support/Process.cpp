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

ChildProcess::ChildProcess(const std::function<int()>& work) : process_(::fork()) {
    if (process_ < 0) throw std::runtime_error("no process can be made");
    if (process_ != 0) return;
    int code = threw;
    try {
        code = work();
    } catch (const std::exception&) {
        code = threw;
    }
    // The test program's own clean-up is not this process's business.
    ::_exit(code);
}

ChildProcess::~ChildProcess() {
    static_cast<void>(exitCode());
}

bool ChildProcess::isRunning() {
    return !look(WNOHANG);
}

int ChildProcess::exitCode() {
    while (!look(0)) {
    }
    return *code_;
}

/// Whether it has ended.
bool ChildProcess::look(int options) {
    if (code_) return true;
    int status = 0;
    const pid_t ended = ::waitpid(process_, &status, options);
    if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
    code_ = ended < 0 ? threw : WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status);
    return true;
}

int inChildProcess(const std::function<int()>& work) {
    return ChildProcess(work).exitCode();
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
