#pragma once

#include "pdf/read/Source.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace quillon::pdf {

/// Opens files on a thread of its own before their turn. Since a file that is open is found and not read again, the
/// owner just opens its files as ever; only the time differs. Both take the next file that nobody has begun with, so
/// neither waits for long, whatever the files are.
class SourcePreloader {
public:
    /// The path of the file at a place of the list; empty where none is opened. Called on both threads.
    using PathAt = std::function<std::string(std::size_t)>;

    /// The files, in the order in which they will be opened, are those at 0 … `count` - 1.
    SourcePreloader(std::size_t count, PathAt pathAt);
    SourcePreloader(const SourcePreloader&) = delete;
    SourcePreloader& operator=(const SourcePreloader&) = delete;
    /// Lets go of the files.
    ~SourcePreloader();

    /// The owner has come to the file at `index`; earlier ones need not be held any more. While that file is just being
    /// opened, opens those behind it: to open it a second time would take longer.
    void reached(std::size_t index);

private:
    [[nodiscard]] bool hasTwoFiles() const;
    [[nodiscard]] bool mayOpen() const noexcept { return next_ < count_ && next_ <= reached_ + mostAhead; }
    void openNext(std::unique_lock<std::mutex>& lock);
    void run();

    // Files opened ahead of the owner.
    static constexpr std::size_t mostAhead = 16;

    const std::size_t count_;
    const PathAt pathAt_;
    std::mutex mutex_;
    std::condition_variable moved_;
    std::map<std::size_t, std::shared_ptr<Source>> held_;  // by place
    std::size_t reached_ = 0;
    std::size_t next_ = 1;            // the first place that nobody has begun with; the owner begins with the first
    std::size_t opening_ = SIZE_MAX;  // the place of the file that the thread is opening
    bool ownerWaits_ = false;
    bool threadWaits_ = false;
    bool stop_ = false;
    std::thread thread_;
};

}  // namespace quillon::pdf
