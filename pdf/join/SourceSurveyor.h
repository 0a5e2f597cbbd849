#pragma once

#include "pdf/join/SourceSurvey.h"
#include "pdf/read/ObjectStreamPrefetcher.h"
#include "pdf/read/SourceHolds.h"
#include "pdf/write/SourcePlan.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace quillon::pdf {

/// Looks through the sources of a merge in their order, on a thread of its own a little ahead of the one that copies
/// them: reads their structure and what is asked for by name, and announces their object streams. What it finds does
/// not depend on timing.
class SourceSurveyor {
public:
    /// Whether the named destinations of the source at an index are asked for. Called on both threads.
    using AsksForDestinations = std::function<bool(std::size_t)>;

    /// `sources` and `prefetcher` must outlive this.
    SourceSurveyor(const SourcePlans& sources, ObjectStreamPrefetcher& prefetcher, AsksForDestinations asks);
    SourceSurveyor(const SourceSurveyor&) = delete;
    SourceSurveyor& operator=(const SourceSurveyor&) = delete;
    ~SourceSurveyor();

    /// The survey of the source at `index`, each once and in order; nothing of a source that is locked or gone. The
    /// caller must not have access to a later source.
    [[nodiscard]] SourceSurvey take(std::size_t index);

private:
    [[nodiscard]] SourceSurvey read(std::size_t index);
    void run();

    // Surveys that wait to be taken.
    static constexpr std::size_t mostAhead = 2;

    const SourcePlans& sources_;
    ObjectStreamPrefetcher& prefetcher_;
    const AsksForDestinations asks_;
    SourceHolds holds_;  // the thread's
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<SourceSurvey> ready_;  // guarded, as the rest
    bool stop_ = false;
    std::thread thread_;
};

}  // namespace quillon::pdf
