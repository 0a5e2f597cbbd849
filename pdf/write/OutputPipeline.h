#pragma once

#include "pdf/filter/FastDeflater.h"
#include "pdf/security/DecryptingReader.h"
#include "pdf/security/Encryptor.h"
#include "pdf/write/ObjectSink.h"
#include "pdf/write/ObjectStreamIndex.h"
#include "pdf/write/OutputFile.h"

#include <xxhash.h>

#include <chrono>
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

/// The second half of writing: deflates object streams, reads what is copied from files, enciphers a protected
/// document, and writes everything, beside the thread that finds and rewrites the objects.
///
/// The file is written strictly in the order of the calls, so it comes out the same whatever the timing. When the
/// caller is ahead by more than `mostAhead` bytes, it deflates, reads and enciphers too instead of waiting. All calls
/// come from one thread, the caller's.
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
    /// Object stream `number`: `dictionary` is the text of its entries but for `Length` and `Filter`. The index of
    /// `objects` is written into `body`, see writeObjectStreamIndex, before that is deflated with `codes`.
    void writeObjectStream(std::uint32_t number, std::string dictionary, std::string body,
                           std::vector<PackedObject> objects, std::shared_ptr<const DeflateCodes> codes);
    /// A stream's data, one byte at least, that is copied from a file when its turn comes. A file that has become
    /// shorter is made up with zeros.
    void copy(std::shared_ptr<InputFile> file, std::vector<FileRange> ranges);
    /// The same for the data that `reader` gives from its beginning.
    void copy(std::unique_ptr<DecryptingReader> reader);

    /// Helps with what is left and waits until all is written. False if anything failed, be it for want of memory.
    [[nodiscard]] bool finish();

    /// After finish(): where each object is in the file, a digest of everything written, and the files that had become
    /// shorter.
    [[nodiscard]] const std::deque<Placed>& places() const noexcept { return places_; }
    [[nodiscard]] XXH128_hash_t digest() const noexcept { return XXH3_128bits_digest(hash_.get()); }
    [[nodiscard]] const std::vector<std::string>& shortened() const noexcept { return shortened_; }

    /// An empty buffer with room for `bytes` bytes, with the memory of one that has been written where possible.
    [[nodiscard]] std::string buffer(std::size_t bytes);

private:
    enum class State { ToPrepare, Preparing, Ready };
    struct Item {
        State state = State::Ready;
        std::string bytes;
        std::vector<Placed> objects;
        std::vector<Sealed> sealed;
        std::string dictionary;  // of an object stream, as the next two
        std::vector<PackedObject> packed;
        std::shared_ptr<const DeflateCodes> codes;
        std::shared_ptr<InputFile> file;  // where the bytes, a piece of a stream's data, are to be read from
        FileRange range;
        std::uint32_t sum = 0;  // checksum of what was read
        bool isLastPiece = false;
        bool wasShort = false;
        bool isLost = false;                       // could not be prepared
        std::unique_ptr<DecryptingReader> reader;  // where all of a stream's data comes from
    };
    struct FreeHash {
        void operator()(XXH3_state_t* state) const noexcept { XXH3_freeState(state); }
    };

    void run();
    void push(std::unique_ptr<Item> item);
    void wakeWriter();
    [[nodiscard]] static std::size_t sizeOf(const Item& item) noexcept;
    [[nodiscard]] Item* nextToPrepare();
    void prepareUnlocked(Item& item, FastDeflater& deflater, std::unique_lock<std::mutex>& lock);
    void prepare(Item& item, FastDeflater& deflater);
    void prepareForWriter(Item& item, std::unique_lock<std::mutex>& lock);
    void deflate(Item& item, FastDeflater& deflater);
    void read(Item& item);
    [[nodiscard]] std::string takeSpare(std::size_t bytes);
    void recycleLocked(std::string buffer);
    void writeItem(Item& item);
    void writeDeciphered(DecryptingReader& reader);
    void seal(std::string_view piece, bool isLast);
    void noteShortened(const std::string& path);
    void put(std::string_view bytes);
    void put(std::string_view bytes, std::uint32_t sum);

    static constexpr std::size_t mostAhead = 1U << 20U;
    // Waking a thread costs the waker as much as rewriting a hundred objects, so an idle writer is woken for a batch.
    static constexpr std::size_t wakeBytes = 512U << 10U;
    // It looks for less by itself after this long, so that little waits where the caller is slow.
    static constexpr std::chrono::milliseconds patience{2};
    // More are hardly ever asked for again.
    static constexpr std::size_t mostSpare = 16;
    // What is copied from a file is read in pieces of this many bytes.
    static constexpr std::uint64_t pieceBytes = 64U << 10U;

    OutputFile& file_;
    const Encryptor* encryptor_;
    std::unique_ptr<XXH3_state_t, FreeHash> hash_;
    FastDeflater callersDeflater_;
    std::deque<Placed> places_;                 // the writer's until finish()
    std::vector<std::string> shortened_;        // likewise
    std::optional<Encryptor::Stream> sealing_;  // of the data that comes in pieces; likewise
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
