#pragma once

#include "pdf/io/BlockCache.h"
#include "pdf/read/SourceDocument.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace quillon::pdf {

/// Looks on a thread of its own whether the content of pages is balanced, before the thread that copies the pages comes
/// to them. Only a hint: what was not looked at in time, or cannot be read apart from the rest of its file, the copying
/// thread looks at itself. What both can look at they see alike, so the output never depends on timing.
class ContentScout {
public:
    ContentScout() = default;
    ContentScout(const ContentScout&) = delete;
    ContentScout& operator=(const ContentScout&) = delete;
    ~ContentScout();

    /// Announces the content of a page, behind those announced before.
    void expect(SourceDocument& document, const PageTree::Page& page);
    /// Whether the stream `number`, the whole content of a page, is balanced; nothing when the caller must look itself.
    /// Each can be taken once.
    [[nodiscard]] std::optional<bool> take(SourceDocument& document, std::uint32_t number);

private:
    enum class State { Waiting, Looking, Ready };
    struct Job {
        std::shared_ptr<InputFile> file;
        std::uint64_t offset = 0;
        State state = State::Waiting;
        std::optional<bool> balanced;
    };
    using Key = std::pair<const InputFile*, std::uint32_t>;

    void run();
    void lookAtNext(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] static std::optional<bool> look(BlockCache& file, std::uint32_t number, std::uint64_t offset);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<Key, Job> jobs_;  // guarded, as the rest
    std::deque<Key> order_;    // of the waiting jobs, and of some that are gone
    bool stop_ = false;
    bool scoutWaits_ = false;
    bool takerWaits_ = false;
    std::unique_ptr<BlockCache> file_;  // the thread's own
    std::thread thread_;                // started when something is first announced
};

}  // namespace quillon::pdf
