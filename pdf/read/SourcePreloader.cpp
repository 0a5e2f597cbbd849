#include "pdf/read/SourcePreloader.h"

#include "pdf/io/BackgroundThread.h"

#include <algorithm>

namespace quillon::pdf {

SourcePreloader::SourcePreloader(std::size_t count, PathAt pathAt) : count_(count), pathAt_(std::move(pathAt)) {
    if (hasTwoFiles()) thread_ = backgroundThread([this] { run(); });
}

SourcePreloader::~SourcePreloader() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    moved_.notify_all();
    if (thread_.joinable()) thread_.join();
}

/// With fewer, nothing can be opened beside the owner.
bool SourcePreloader::hasTwoFiles() const {
    std::size_t files = 0;
    for (std::size_t index = 0; index < count_ && files < 2; ++index) {
        if (!pathAt_(index).empty()) ++files;
    }
    return files == 2;
}

void SourcePreloader::reached(std::size_t index) {
    std::map<std::size_t, std::shared_ptr<Source>> released;  // ends outside the lock
    std::unique_lock lock(mutex_);
    reached_ = std::max(reached_, index);
    next_ = std::max(next_, index + 1);
    while (!held_.empty() && held_.begin()->first < index) released.insert(held_.extract(held_.begin()));
    while (opening_ == index) {
        if (mayOpen()) {
            openNext(lock);
        } else {
            ownerWaits_ = true;
            moved_.wait(lock);
            ownerWaits_ = false;
        }
    }
    // To wake the thread for every file would take as long as opening some.
    if (threadWaits_ && next_ <= index + mostAhead / 2) moved_.notify_all();
}

/// Opens a file and holds it, unlocked for that time.
void SourcePreloader::openNext(std::unique_lock<std::mutex>& lock) {
    const std::size_t index = next_++;
    lock.unlock();
    const std::string path = pathAt_(index);
    auto source = path.empty() ? nullptr : Source::open(path);
    lock.lock();
    if (source && index >= reached_) held_.emplace(index, std::move(source));
}

void SourcePreloader::run() {
    std::unique_lock lock(mutex_);
    while (!stop_ && next_ < count_) {
        if (mayOpen()) {
            opening_ = next_;
            openNext(lock);
            opening_ = SIZE_MAX;
            if (ownerWaits_) moved_.notify_all();
        } else {
            threadWaits_ = true;
            moved_.wait(lock);
            threadWaits_ = false;
        }
    }
}

}  // namespace quillon::pdf
