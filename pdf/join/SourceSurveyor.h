#pragma once

#include "pdf/join/SourceSurvey.h"
#include "pdf/read/ObjectStreamPrefetcher.h"
#include "pdf/read/SourceHolds.h"
#include "pdf/write/SourcePlan.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quillon::pdf {

/// Looks through the sources of a merge in their order, on a thread of its own a little ahead of the one that copies
/// them: reads their structure and what is asked for, and announces their object streams. While it is not ahead, the
/// one that copies looks through sources too, though ahead of its need only through those that do not keep it from
/// copying for long. What is found does not depend on timing.
class SourceSurveyor {
public:
    /// What is asked for of the source at an index. Called on both threads.
    using WishesFor = std::function<SourceSurvey::Wishes(std::size_t)>;

    /// `sources` and `prefetcher` must outlive this.
    SourceSurveyor(const SourcePlans& sources, ObjectStreamPrefetcher& prefetcher, WishesFor wishes);
    SourceSurveyor(const SourceSurveyor&) = delete;
    SourceSurveyor& operator=(const SourceSurveyor&) = delete;
    ~SourceSurveyor();

    /// The survey of the source at `index`, each once and in order; nothing of a source that is locked or gone. The
    /// caller must not have access to any source.
    [[nodiscard]] SourceSurvey take(std::size_t index);
    /// Frees the structure of a source that has been copied: on the thread, whose memory most of it is, unless
    /// `mostDiscarded` bytes wait there already.
    void discard(std::unique_ptr<SourceDocument> document);

private:
    struct Ready {
        SourceSurvey survey;
        std::size_t bytes = 0;
        // To be announced.
        std::shared_ptr<InputFile> file;
        std::vector<ObjectStreamPrefetcher::Wanted> streams;
        std::shared_ptr<const Decryptor> decryptor;
    };

    [[nodiscard]] Ready read(std::size_t index, SourceHolds& holds);
    void readNext(SourceHolds& holds, std::unique_lock<std::mutex>& lock);
    void announceReady();
    [[nodiscard]] bool isWorthReading(std::size_t index) const;
    void freeDiscarded(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] bool mayRead() const noexcept {
        const bool hasRoom = ready_.empty() || (ready_.size() < mostAhead && bytesAhead_ < mostBytesAhead);
        return next_ < sources_.size() && hasRoom;
    }
    [[nodiscard]] bool mustFree() const noexcept { return bytesDiscarded_ >= worthFreeing; }
    void run();

    // Surveys that wait to be taken, and bytes that were read for them. Fewer than SourceHolds keeps. A few
    // megabytes are enough: surveys that are not needed yet would only keep the processors from those that are.
    static constexpr std::size_t mostAhead = 6;
    static constexpr std::size_t mostBytesAhead = 4U << 20U;
    // Bytes discarded and not freed yet: those that are worth waking the thread, and the most that it is left.
    static constexpr std::size_t worthFreeing = 1U << 20U;
    static constexpr std::size_t mostDiscarded = 8U << 20U;

    const SourcePlans& sources_;
    ObjectStreamPrefetcher& prefetcher_;
    const WishesFor wishes_;
    SourceHolds callersHolds_;
    SourceHolds holds_;  // the thread's
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t next_ = 0;                // the first source that nobody has begun with; guarded, as the rest
    std::size_t announced_ = 0;           // sources whose object streams were announced
    std::map<std::size_t, Ready> ready_;  // by index
    std::size_t bytesAhead_ = 0;
    std::vector<std::unique_ptr<SourceDocument>> discarded_;
    std::size_t bytesDiscarded_ = 0;
    bool stop_ = false;
    bool threadWaits_ = false;
    std::thread thread_;
};

}  // namespace quillon::pdf
