#pragma once

namespace quillon {

/// Runs the program until the user quits it, and returns its exit status. If it runs already for this user on this
/// display, that one is asked to show its window instead.
[[nodiscard]] int ApplicationMain(int argc, char** argv);

}  // namespace quillon
