#pragma once

#include "pdf/read/Source.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace quillon::pdf {

/// Opens files on a thread of its own before their turn: every second one of a list, while the owner opens those
/// between. Since a file that is open is found and not read again, the owner just opens its files as ever; only the
/// time differs.
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

    /// The owner has come to the file at `index`; earlier ones need not be held any more. Waits if that file is just
    /// being opened, since opening it a second time takes longer.
    void reached(std::size_t index);

private:
    [[nodiscard]] bool hasTwoFiles() const;
    void run();

    // Files opened ahead of the owner.
    static constexpr std::size_t mostAhead = 16;

    const std::size_t count_;
    const PathAt pathAt_;
    std::mutex mutex_;
    std::condition_variable moved_;
    std::deque<std::pair<std::size_t, std::shared_ptr<Source>>> held_;  // in the order of the list
    std::size_t reached_ = 0;
    std::size_t opening_ = SIZE_MAX;  // the place of the file that the thread is opening
    bool ownerWaits_ = false;
    bool waits_ = false;
    bool stop_ = false;
    std::thread thread_;
};

}  // namespace quillon::pdf
