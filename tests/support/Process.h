#pragma once

#include <functional>

namespace quillon::test {

/// Runs `work` in a forked process and returns its exit code: what `work` returns, at most 99, or 100 and the number of
/// the signal that ended it. For what a test must not do to itself, such as giving up rights or running out of disk.
[[nodiscard]] int inChildProcess(const std::function<int()>& work);

/// The same as a user without rights over files of others, if the program runs as root; files in folders that are open
/// to all can be reached.
[[nodiscard]] int asPlainUser(const std::function<int()>& work);

/// The number of files, folders and the like that this process has open.
[[nodiscard]] int openDescriptors();

}  // namespace quillon::test
