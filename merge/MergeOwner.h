#pragma once

namespace quillon {

/// Is told when a merge job begins and ends. Called on the main thread.
class MergeOwner {
public:
    virtual ~MergeOwner() = default;

    /// The job waits until this returns.
    virtual void startHandling() = 0;
    /// The job has written, or failed to write, its file, and does not wait.
    virtual void stopHandling() = 0;
};

}  // namespace quillon
