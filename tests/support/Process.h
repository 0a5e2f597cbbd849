#pragma once

#include <functional>
#include <optional>
#include <sys/types.h>

namespace quillon::test {

/// A forked process that does some work. To be started while no other thread is running: what that one has locked stays
/// locked in the child.
class ChildProcess {
public:
    explicit ChildProcess(const std::function<int()>& work);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Waits for its end.
    ~ChildProcess();

    [[nodiscard]] bool isRunning();
    /// Waits for its end. What the work returned, at most 99, or 100 and the number of the signal that ended it.
    [[nodiscard]] int exitCode();

private:
    bool look(int options);

    pid_t process_;
    std::optional<int> code_;
};

/// Runs `work` in a forked process and returns its exit code. For what a test must not do to itself, such as giving up
/// rights or running out of disk.
[[nodiscard]] int inChildProcess(const std::function<int()>& work);

/// The same as a user without rights over files of others, if the program runs as root; files in folders that are open
/// to all can be reached.
[[nodiscard]] int asPlainUser(const std::function<int()>& work);

/// The number of files, folders and the like that this process has open.
[[nodiscard]] int openDescriptors();

}  // namespace quillon::test
