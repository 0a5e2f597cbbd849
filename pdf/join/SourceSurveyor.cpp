#include "pdf/join/SourceSurveyor.h"

#include "pdf/read/Source.h"

namespace quillon::pdf {

SourceSurveyor::SourceSurveyor(const SourcePlans& sources, ObjectStreamPrefetcher& prefetcher, WishesFor wishes)
    : sources_(sources), prefetcher_(prefetcher), wishes_(std::move(wishes)) {}

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
        firstHold_.use(sources_[0].source());
        if (sources_.size() > 1) thread_ = std::thread([this] { run(); });
        return read(0).survey;
    }
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !ready_.empty(); });
    Ready next = std::move(ready_.front());
    ready_.pop_front();
    bytesAhead_ -= next.bytes;
    if (ready_.size() <= mostAhead / 2) changed_.notify_all();
    return std::move(next.survey);
}

SourceSurveyor::Ready SourceSurveyor::read(std::size_t index) {
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
    SourceSurvey survey = SourceSurvey::read(plan, *access.document(), wishes_(index));
    // Of a source that is not whole only the names are kept that links use.
    if (!isFirst && survey.isWhole) survey.readExplicit(reader);
    if (!isFirst && survey.isWhole) reader.loadObjectStreams();
    if (!isFirst) announce();
    return {std::move(survey), reader.textInMemory()};
}

void SourceSurveyor::run() {
    for (std::size_t index = 1; index < sources_.size(); ++index) {
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] {
                return stop_ || ready_.empty() || (ready_.size() < mostAhead && bytesAhead_ < mostBytesAhead);
            });
            if (stop_) return;
        }
        holds_.use(sources_[index].source());
        Ready next = read(index);
        const std::lock_guard lock(mutex_);
        bytesAhead_ += next.bytes;
        ready_.push_back(std::move(next));
        changed_.notify_all();
    }
}

}  // namespace quillon::pdf
