#include "pdf/join/SourceSurveyor.h"

#include "pdf/io/BackgroundThread.h"
#include "pdf/io/HeapRoom.h"
#include "pdf/read/Source.h"

#include <utility>

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
    if (index == 0 && sources_.size() > 1) thread_ = backgroundThread([this] { run(); });
    auto found = ready_.find(index);
    for (; found == ready_.end(); found = ready_.find(index)) {
        if (next_ <= index || (mayRead() && isWorthReading(next_))) {
            readNext(callersHolds_, lock);
        } else {
            changed_.wait(lock);
        }
    }
    Ready taken = std::move(found->second);
    ready_.erase(found);
    bytesAhead_ -= taken.bytes;
    if (threadWaits_ && mayRead() && ready_.size() <= mostAhead / 2) changed_.notify_all();
    return std::move(taken.survey);
}

/// Whether the caller should look through a source while it waits for an earlier one. A small one is most likely done
/// soon. One of which few pages are taken is copied sooner than it is looked through, so there is little else to do.
/// With any other the caller would still be busy when it could copy.
bool SourceSurveyor::isWorthReading(std::size_t index) const {
    constexpr std::uint64_t smallFile = 256U << 10U;
    constexpr std::size_t fewPages = 16;
    const SourcePlan plan = sources_[index];
    return plan.source()->file()->size() <= smallFile || plan.copies().size() <= fewPages;
}

void SourceSurveyor::discard(std::unique_ptr<SourceDocument> document) {
    document->reader().file().clear();  // blocks are mostly the caller's own memory
    const std::size_t bytes = document->memory() + document->textInMemory();
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable() || bytesDiscarded_ + bytes > mostDiscarded) return;
    discarded_.push_back(std::move(document));
    bytesDiscarded_ += bytes;
    if (threadWaits_ && mustFree()) changed_.notify_all();
}

/// Whoever reads a source, later ones as well as the first, leaves its reader in the same state: what is read in which
/// order decides what is copied of a damaged file.
SourceSurveyor::Ready SourceSurveyor::read(std::size_t index, SourceHolds& holds) {
    const SourcePlan plan = sources_[index];
    holds.use(plan.source());
    const SourceAccess access(*plan.source());
    if (!access.document() || access.document()->isLocked()) return {};
    ObjectReader& reader = access.document()->reader();
    // The caller always reads the first, and nothing is there yet that could be done meanwhile.
    const bool isFirst = index == 0;
    // Of a source of which as many pages are taken as it has, most will be read.
    if (plan.copies().size() >= access.document()->pages().pages().size()) reader.file().readWhole();
    if (isFirst) {
        prefetcher_.expect(plan.source()->file(), reader.objectStreams(), reader.decryptor());
        reader.setPrefetcher(&prefetcher_);
    }
    SourceSurvey survey = SourceSurvey::read(plan, *access.document(), wishes_(index));
    // Of a source that is not whole only the names are kept that links use.
    if (!isFirst && survey.isWhole) survey.readExplicit(reader);
    const std::size_t bytes = access.document()->textInMemory() + reader.file().memory();
    Ready ready{std::move(survey), bytes, plan.source()->file(), {}, reader.decryptor()};
    if (!isFirst) ready.streams = reader.objectStreams();
    return ready;
}

/// Unlocked for as long as it takes.
void SourceSurveyor::readNext(SourceHolds& holds, std::unique_lock<std::mutex>& lock) {
    const std::size_t index = next_++;
    lock.unlock();
    Ready next = read(index, holds);
    lock.lock();
    bytesAhead_ += next.bytes;
    ready_.emplace(index, std::move(next));
    announceReady();
}

/// In the order of the sources, whoever has read them: streams that are not needed yet would keep back those that are.
void SourceSurveyor::announceReady() {
    for (auto ready = ready_.find(announced_); ready != ready_.end(); ready = ready_.find(++announced_)) {
        prefetcher_.expect(ready->second.file, ready->second.streams, ready->second.decryptor);
    }
}

void SourceSurveyor::freeDiscarded(std::unique_lock<std::mutex>& lock) {
    auto freed = std::exchange(discarded_, {});
    bytesDiscarded_ = 0;
    lock.unlock();
    freed.clear();
    lock.lock();
}

void SourceSurveyor::run() {
    giveWay(7);
    const HeapRoom::Share share;
    std::unique_lock lock(mutex_);
    while (!stop_) {
        if (mustFree() || (!mayRead() && !discarded_.empty())) {
            freeDiscarded(lock);
        } else if (mayRead()) {
            readNext(holds_, lock);
            changed_.notify_all();
        } else {
            threadWaits_ = true;
            changed_.wait(lock);
            threadWaits_ = false;
        }
    }
}

}  // namespace quillon::pdf
