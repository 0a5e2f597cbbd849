#include "pdf/read/SourcePreloader.h"

#include <algorithm>
#include <vector>

namespace quillon::pdf {

SourcePreloader::SourcePreloader(std::size_t count, PathAt pathAt) : count_(count), pathAt_(std::move(pathAt)) {
    if (hasTwoFiles()) thread_ = std::thread([this] { run(); });
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
    std::vector<std::shared_ptr<Source>> released;  // end outside the lock
    std::unique_lock lock(mutex_);
    ownerWaits_ = true;
    moved_.wait(lock, [&] { return opening_ != index; });
    ownerWaits_ = false;
    for (; !held_.empty() && held_.front().first < index; held_.pop_front()) {
        released.push_back(std::move(held_.front().second));
    }
    reached_ = std::max(reached_, index);
    if (waits_) moved_.notify_all();
}

void SourcePreloader::run() {
    std::unique_lock lock(mutex_);
    for (std::size_t index = 1; index < count_; index += 2) {
        while (!stop_ && index > reached_ + mostAhead) {
            waits_ = true;
            moved_.wait(lock);
            waits_ = false;
        }
        if (stop_) return;
        if (index <= reached_) continue;
        opening_ = index;
        lock.unlock();
        const std::string path = pathAt_(index);
        auto source = path.empty() ? nullptr : Source::open(path);
        lock.lock();
        opening_ = SIZE_MAX;
        if (ownerWaits_) moved_.notify_all();
        if (source && index >= reached_) held_.emplace_back(index, std::move(source));
    }
}

}  // namespace quillon::pdf
