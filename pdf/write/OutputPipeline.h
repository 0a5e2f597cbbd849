#pragma once

#include "pdf/filter/Flate.h"
#include "pdf/security/DecryptingReader.h"
#include "pdf/security/Encryptor.h"
#include "pdf/write/ObjectSink.h"
#include "pdf/write/OutputFile.h"

#include <xxhash.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// The second half of writing: deflates object streams, enciphers a protected document, and writes everything to the
/// file, beside the thread that finds and rewrites the objects.
///
/// The file is written strictly in the order of the calls, so it comes out the same whatever the timing. Deflating and
/// enciphering are by far the most work here; when the caller is ahead by more than `mostAhead` bytes, it does them too
/// instead of waiting. All calls come from one thread, the caller's.
class OutputPipeline {
public:
    /// An object in a run of bytes: its number, and where it begins.
    struct Placed {
        std::uint32_t number;
        std::uint64_t offset;
    };

    /// Data of a stream in a run of bytes, with the room that it needs to be enciphered in place.
    struct Sealed {
        std::size_t begin;   ///< of the room, a block before the data
        std::size_t length;  ///< of the data
    };

    /// `encryptor` must outlive this; null: nothing is enciphered.
    explicit OutputPipeline(OutputFile& file, const Encryptor* encryptor = nullptr);
    OutputPipeline(const OutputPipeline&) = delete;
    OutputPipeline& operator=(const OutputPipeline&) = delete;
    ~OutputPipeline();

    /// Whole objects as they stand, but for the data in `sealed`, which is enciphered; `objects` with offsets from the
    /// beginning of `bytes`.
    void write(std::string bytes, std::vector<Placed> objects, std::vector<Sealed> sealed = {});
    /// Object stream `number`: `dictionary` is the text of its entries but for `Length` and `Filter`, `body` is not
    /// deflated yet.
    void writeDeflated(std::uint32_t number, std::string dictionary, std::string body);
    /// Bytes that are copied from a file when their turn comes. A file that has become shorter is made up with zeros.
    void copy(std::shared_ptr<InputFile> file, std::vector<FileRange> ranges);
    /// The same for the bytes of `reader` from its beginning.
    void copy(std::unique_ptr<DecryptingReader> reader);

    /// Waits until all is written. False if anything failed.
    [[nodiscard]] bool finish();

    /// After finish(): where each object is in the file, a digest of everything written, and the files that had become
    /// shorter.
    [[nodiscard]] const std::vector<Placed>& places() const noexcept { return places_; }
    [[nodiscard]] XXH128_hash_t digest() const noexcept { return XXH3_128bits_digest(hash_.get()); }
    [[nodiscard]] const std::vector<std::string>& shortened() const noexcept { return shortened_; }

    /// An empty buffer, with the memory of one that has been written where possible.
    [[nodiscard]] std::string buffer();

private:
    enum class State { ToPrepare, Preparing, Ready };
    struct Item {
        State state = State::Ready;
        std::string bytes;
        std::vector<Placed> objects;
        std::vector<Sealed> sealed;
        std::string dictionary;  // of an object stream
        std::shared_ptr<InputFile> file;
        std::vector<FileRange> ranges;
        std::unique_ptr<DecryptingReader> reader;
    };
    struct FreeHash {
        void operator()(XXH3_state_t* state) const noexcept { XXH3_freeState(state); }
    };

    void run();
    void push(std::unique_ptr<Item> item);
    [[nodiscard]] Item* nextToPrepare();
    void prepareUnlocked(Item& item, Deflater& deflater, std::unique_lock<std::mutex>& lock);
    void deflate(Item& item, Deflater& deflater);
    void writeItem(Item& item);
    void writeCopy(Item& item);
    void copyRange(InputFile& file, FileRange range);
    void copyData(std::string_view bytes);
    void noteShortened(const std::string& path);
    void put(std::string_view bytes);

    static constexpr std::size_t mostAhead = 3U << 20U;
    // Waking a thread costs the waker as much as rewriting a hundred objects, so an idle writer is woken for a batch.
    static constexpr std::size_t wakeBytes = 256U << 10U;
    static constexpr std::size_t mostSpare = 8;

    OutputFile& file_;
    const Encryptor* encryptor_;
    std::unique_ptr<XXH3_state_t, FreeHash> hash_;
    Deflater callersDeflater_;
    std::vector<Placed> places_;                // the writer's until finish()
    std::vector<std::string> shortened_;        // likewise
    std::string copyBuffer_;                    // likewise
    std::optional<Encryptor::Stream> sealing_;  // of the copy being made; likewise
    bool failed_ = false;                       // likewise

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::unique_ptr<Item>> items_;  // guarded, as the rest
    std::vector<std::string> spare_;
    std::size_t ahead_ = 0;
    bool done_ = false;
    bool writerWaits_ = false;
    bool callerWaits_ = false;
    std::thread thread_;
};

}  // namespace quillon::pdf
