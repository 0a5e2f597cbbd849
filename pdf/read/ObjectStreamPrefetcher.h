#pragma once

#include "pdf/io/BlockCache.h"
#include "pdf/read/ObjectStream.h"
#include "pdf/security/Decryptor.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// Reads and inflates object streams on a thread of its own, before the thread that copies objects comes to them. Only
/// a hint: what was not read in time, or is not plain enough to be read apart, the copying thread reads itself, so the
/// result never depends on timing.
class ObjectStreamPrefetcher {
public:
    struct Wanted {
        std::uint32_t number;  ///< object number of the stream
        std::uint64_t offset;  ///< in the file
    };

    ObjectStreamPrefetcher() = default;
    ObjectStreamPrefetcher(const ObjectStreamPrefetcher&) = delete;
    ObjectStreamPrefetcher& operator=(const ObjectStreamPrefetcher&) = delete;
    ~ObjectStreamPrefetcher();

    /// Announces streams of `file` that will be asked for, about in this order, behind those announced before.
    /// `decryptor` deciphers them; null where they are not enciphered.
    void expect(const std::shared_ptr<InputFile>& file, const std::vector<Wanted>& streams,
                const std::shared_ptr<const Decryptor>& decryptor = nullptr);
    // The next two are for one thread, the one that copies.
    /// The stream, each once; null when the caller must read it itself. Waits for one that is just being read, but if
    /// its data is short or not there yet only a moment.
    [[nodiscard]] std::shared_ptr<const ObjectStream> take(const InputFile& file, std::uint32_t number);
    /// Drops what was announced of `file` and not taken. What is just being read may be read to its end.
    void forget(const InputFile& file);

private:
    enum class State { Waiting, Reading, Unwanted, Ready };  // Unwanted: still being read
    struct Job {
        std::shared_ptr<InputFile> file;
        std::shared_ptr<const Decryptor> decryptor;
        std::uint64_t offset = 0;
        State state = State::Waiting;
        std::shared_ptr<const ObjectStream> objects;
    };
    using Key = std::pair<const InputFile*, std::uint32_t>;

    void run();
    void wakeReader();
    [[nodiscard]] bool isReadSoon(const Job& job, std::unique_lock<std::mutex>& lock);
    void readNext(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] std::shared_ptr<const ObjectStream> read(const Decryptor* decryptor, std::uint32_t number,
                                                           std::uint64_t offset);

    // Object streams mostly have a few KiB each, and stand between other objects, which the copying thread reads.
    static constexpr std::size_t blockBytes = 4U << 10U;
    // Bytes inflated and not taken yet beyond which the thread waits.
    static constexpr std::size_t mostAhead = 3U << 20U;
    // About as long as most streams take. With fewer processors than threads the one that reads may be interrupted for
    // many times that.
    static constexpr std::chrono::microseconds patience{100};
    // Of a stream with more deflated data than this, which takes longer.
    static constexpr std::size_t longStream = 64U << 10U;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<Key, Job> jobs_;
    std::deque<Key> order_;  // of the waiting jobs, and of some that are gone
    std::size_t ahead_ = 0;
    bool stop_ = false;
    bool readerWaits_ = false;
    bool takerWaits_ = false;
    std::unique_ptr<BlockCache> file_;        // the thread's own
    std::atomic<std::size_t> dataBytes_ = 0;  // of the stream that it reads, once they are known
    std::thread thread_;                      // from the first streams on
};

}  // namespace quillon::pdf
