#pragma once

#include "merge/MergeOwner.h"
#include "platform/jobs/MainThread.h"

#include <functional>
#include <string>
#include <vector>

namespace quillon::test {

/// Writes down what a merge job tells it, with ` elsewhere` behind a call that did not come on the main thread.
class RecordingOwner : public MergeOwner {
public:
    std::vector<std::string> calls;
    std::function<void()> onStart;  ///< run by startHandling when set
    std::function<void()> onStop;   ///< run by stopHandling when set

    void startHandling() override {
        note("start");
        if (onStart) onStart();
    }
    void stopHandling() override {
        note("stop");
        if (onStop) onStop();
    }

private:
    void note(const std::string& call) { calls.push_back(MainThread::isCurrent() ? call : call + " elsewhere"); }
};

}  // namespace quillon::test
