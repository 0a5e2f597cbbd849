#pragma once

#include <functional>

namespace quillon {

/// Runs functions on the thread of the QCoreApplication.
///
/// Functions sent from other threads run one at a time in the order in which they were sent, when the event loop gets
/// to them. They are not handed to the event loop itself but kept in a list of their own, so that a main thread that
/// has to stand still for a background job can go on running exactly these, and nothing else, with `waitUntil`.
class MainThread {
public:
    MainThread() = delete;

    /// Whether the caller is on the main thread. While there is no application every thread counts as the main
    /// thread, and functions run directly.
    [[nodiscard]] static bool isCurrent();

    /// Runs `function` on the main thread; it must not throw.
    /// With `waitUntilDone` the call returns after it has run, and on the main thread itself runs it directly. Without,
    /// the call returns at once and the function runs later, on the main thread too.
    /// Waiting needs a main thread that runs its event loop or `waitUntil` sooner or later.
    static void performOnMainThread(std::function<void()> function, bool waitUntilDone);

    /// Blocks the main thread until `condition` holds, running the functions that arrive meanwhile; those that have
    /// arrived by then have run when it returns. `condition` is looked at again after every function and `recheck`; it
    /// must not call MainThread. Only for the main thread.
    static void waitUntil(const std::function<bool()>& condition);

    /// Makes `waitUntil` look at its condition again. From any thread, after what the condition reads has changed.
    static void recheck();
};

}  // namespace quillon
