#include "pdf/read/SourcePreloader.h"

#include <algorithm>
#include <utility>

namespace quillon::pdf {

SourcePreloader::SourcePreloader(std::vector<std::string> paths) : paths_(std::move(paths)), held_(paths_.size()) {
    const auto isFile = [](const std::string& path) { return !path.empty(); };
    if (std::ranges::count_if(paths_, isFile) > 1) thread_ = std::thread([this] { run(); });
}

SourcePreloader::~SourcePreloader() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    moved_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void SourcePreloader::reached(std::size_t index) {
    std::vector<std::shared_ptr<Source>> released;  // end outside the lock
    const std::lock_guard lock(mutex_);
    for (std::size_t i = reached_; i < std::min(index, held_.size()); ++i) released.push_back(std::move(held_[i]));
    reached_ = std::max(reached_, index);
    if (waits_) moved_.notify_all();
}

void SourcePreloader::run() {
    std::unique_lock lock(mutex_);
    for (std::size_t index = 1; index < paths_.size(); index += 2) {
        while (!stop_ && index > reached_ + mostAhead) {
            waits_ = true;
            moved_.wait(lock);
            waits_ = false;
        }
        if (stop_) return;
        if (index <= reached_) continue;
        lock.unlock();
        auto source = Source::open(paths_[index]);
        lock.lock();
        if (index >= reached_) held_[index] = std::move(source);
    }
}

}  // namespace quillon::pdf
