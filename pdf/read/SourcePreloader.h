#pragma once

#include "pdf/read/Source.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillon::pdf {

/// Opens files on a thread of its own before their turn: every second one of a list, while the owner opens those
/// between. Since a file that is open is found and not read again, the owner just opens its files as ever; only the
/// time differs.
class SourcePreloader {
public:
    /// `paths` are the files in the order in which they will be opened; an empty one is passed over.
    explicit SourcePreloader(std::vector<std::string> paths);
    SourcePreloader(const SourcePreloader&) = delete;
    SourcePreloader& operator=(const SourcePreloader&) = delete;
    /// Lets go of the files.
    ~SourcePreloader();

    /// The owner has come to the file at `index`; earlier ones need not be held any more.
    void reached(std::size_t index);

private:
    void run();

    // Files opened ahead of the owner.
    static constexpr std::size_t mostAhead = 16;

    const std::vector<std::string> paths_;
    std::mutex mutex_;
    std::condition_variable moved_;
    std::vector<std::shared_ptr<Source>> held_;
    std::size_t reached_ = 0;
    bool waits_ = false;
    bool stop_ = false;
    std::thread thread_;
};

}  // namespace quillon::pdf
