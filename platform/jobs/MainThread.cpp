#include "platform/jobs/MainThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace quillon {
namespace {

struct Call {
    std::function<void()> function;
    bool done = false;  // guarded by Calls::mutex
};

/// The functions that wait for the main thread.
struct Calls {
    std::mutex mutex;
    std::condition_variable changed;  // a call arrived or is done, or a condition is to be looked at again
    std::deque<std::shared_ptr<Call>> pending;
};

Calls& calls() {
    static Calls instance;
    return instance;
}

/// Runs the oldest pending call. `lock` holds Calls::mutex, which is released while the call runs.
void runOne(std::unique_lock<std::mutex>& lock) {
    const std::shared_ptr<Call> call = calls().pending.front();
    calls().pending.pop_front();
    lock.unlock();
    call->function();
    // What the function holds goes here, on the main thread, before a waiting caller moves on.
    call->function = nullptr;
    lock.lock();
    call->done = true;
    calls().changed.notify_all();
}

/// Receives one event for each call. A call that waitUntil has run already leaves its event with nothing to do.
class Bell final : public QObject {
public:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        std::unique_lock lock(calls().mutex);
        if (!calls().pending.empty()) runOne(lock);
        return true;
    }
};

/// Lives as long as the program: a call may be sent at any time, by a thread that knows nothing of the order in which
/// static objects go.
Bell* bell() {
    static Bell* const instance = [] {
        auto* made = new Bell;
        made->moveToThread(QCoreApplication::instance()->thread());
        return made;
    }();
    return instance;
}

void send(const std::shared_ptr<Call>& call) {
    auto event = std::make_unique<QEvent>(QEvent::User);
    {
        const std::lock_guard lock(calls().mutex);
        calls().pending.push_back(call);
        calls().changed.notify_all();
    }
    QCoreApplication::postEvent(bell(), event.release());
}

}  // namespace

bool MainThread::isCurrent() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application == nullptr || application->thread() == QThread::currentThread();
}

void MainThread::performOnMainThread(std::function<void()> function, bool waitUntilDone) {
    if (QCoreApplication::instance() == nullptr || (waitUntilDone && isCurrent())) {
        function();
        return;
    }
    const auto call = std::make_shared<Call>();
    call->function = std::move(function);
    send(call);
    if (!waitUntilDone) return;
    std::unique_lock lock(calls().mutex);
    calls().changed.wait(lock, [&call] { return call->done; });
}

void MainThread::waitUntil(const std::function<bool()>& condition) {
    std::unique_lock lock(calls().mutex);
    for (;;) {
        // Read before the list is emptied: what was sent before the condition came to hold is then in the list.
        const bool holds = condition();
        if (!calls().pending.empty()) {
            runOne(lock);
        } else if (holds) {
            return;
        } else {
            calls().changed.wait(lock);
        }
    }
}

void MainThread::recheck() {
    const std::lock_guard lock(calls().mutex);
    calls().changed.notify_all();
}

}  // namespace quillon
