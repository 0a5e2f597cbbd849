#include "pdf/join/SourceSurveyor.h"

#include "pdf/read/Source.h"

namespace quillon::pdf {

SourceSurveyor::SourceSurveyor(const SourcePlans& sources, ObjectStreamPrefetcher& prefetcher, AsksForDestinations asks)
    : sources_(sources), prefetcher_(prefetcher), asks_(std::move(asks)) {}

SourceSurveyor::~SourceSurveyor() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

SourceSurvey SourceSurveyor::take(std::size_t index) {
    if (index == 0) {
        SourceSurvey first = read(0);
        if (sources_.size() > 1) thread_ = std::thread([this] { run(); });
        return first;
    }
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !ready_.empty(); });
    SourceSurvey survey = std::move(ready_.front());
    ready_.pop_front();
    changed_.notify_all();
    return survey;
}

SourceSurvey SourceSurveyor::read(std::size_t index) {
    const SourcePlan plan = sources_[index];
    const SourceAccess access(*plan.source());
    if (!access.document() || access.document()->isLocked()) return {};
    ObjectReader& reader = access.document()->reader();
    const auto announce = [&] {
        prefetcher_.expect(plan.source()->file(), reader.objectStreams(), reader.decryptor());
    };
    // The caller waits for the first.
    const bool isFirst = index == 0;
    if (isFirst) announce();
    if (isFirst) reader.setPrefetcher(&prefetcher_);
    SourceSurvey survey = SourceSurvey::read(plan, *access.document(), asks_(index));
    // Of a source that is not whole only the names are kept that links use.
    if (!isFirst && survey.isWhole) survey.readTexts(reader);
    if (!isFirst) announce();
    return survey;
}

void SourceSurveyor::run() {
    for (std::size_t index = 1; index < sources_.size(); ++index) {
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return stop_ || ready_.size() < mostAhead; });
            if (stop_) return;
        }
        holds_.use(sources_[index].source());
        SourceSurvey survey = read(index);
        const std::lock_guard lock(mutex_);
        ready_.push_back(std::move(survey));
        changed_.notify_all();
    }
}

}  // namespace quillon::pdf
