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
    std::unique_lock lock(mutex_);
    if (index == 0 && sources_.size() > 1) thread_ = std::thread([this] { run(); });
    changed_.wait(lock, [&] { return next_ == index || !ready_.empty(); });
    if (next_ == index) {
        ++next_;
        lock.unlock();
        return read(index, callersHolds_).survey;
    }
    Ready next = std::move(ready_.front());
    ready_.pop_front();
    bytesAhead_ -= next.bytes;
    if (threadWaits_ && ready_.size() <= mostAhead / 2) changed_.notify_all();
    return std::move(next.survey);
}

/// Whoever reads a source, later ones as well as the first, leaves its reader in the same state: what is read in which
/// order decides what is copied of a damaged file.
SourceSurveyor::Ready SourceSurveyor::read(std::size_t index, SourceHolds& holds) {
    const SourcePlan plan = sources_[index];
    holds.use(plan.source());
    const SourceAccess access(*plan.source());
    if (!access.document() || access.document()->isLocked()) return {};
    ObjectReader& reader = access.document()->reader();
    const auto announce = [&] {
        prefetcher_.expect(plan.source()->file(), reader.objectStreams(), reader.decryptor());
    };
    // The caller always reads the first, and nothing is there yet that could be done meanwhile.
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
    const auto hasRoom = [this] {
        return ready_.empty() || (ready_.size() < mostAhead && bytesAhead_ < mostBytesAhead);
    };
    std::unique_lock lock(mutex_);
    while (!stop_ && next_ < sources_.size()) {
        if (!hasRoom()) {
            threadWaits_ = true;
            changed_.wait(lock);
            threadWaits_ = false;
            continue;
        }
        const std::size_t index = next_++;
        lock.unlock();
        Ready next = read(index, holds_);
        lock.lock();
        bytesAhead_ += next.bytes;
        ready_.push_back(std::move(next));
        changed_.notify_all();
    }
}

}  // namespace quillon::pdf
