#include "pdf/write/OutputPipeline.h"

#include "pdf/filter/Flate.h"
#include "pdf/io/BackgroundThread.h"
#include "pdf/io/HeapRoom.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <new>

namespace quillon::pdf {

/// Bytes that the item is or will be read to; what is deflated counts as it is.
std::size_t OutputPipeline::sizeOf(const Item& item) noexcept {
    return item.file ? static_cast<std::size_t>(item.range.length) : item.bytes.size();
}

OutputPipeline::OutputPipeline(OutputFile& file, const Encryptor* encryptor)
    : file_(file), encryptor_(encryptor), hash_(XXH3_createState()) {
    if (!hash_) throw std::bad_alloc();
    XXH3_128bits_reset(hash_.get());
    thread_ = backgroundThread([this] { run(); });
}

OutputPipeline::~OutputPipeline() {
    static_cast<void>(finish());
}

void OutputPipeline::write(std::string bytes, std::vector<Placed> objects, std::vector<Sealed> sealed) {
    auto item = std::make_unique<Item>();
    if (!sealed.empty()) item->state = State::ToPrepare;
    item->bytes = std::move(bytes);
    item->objects = std::move(objects);
    item->sealed = std::move(sealed);
    push(std::move(item));
}

void OutputPipeline::writeObjectStream(std::uint32_t number, std::string dictionary, std::string body,
                                       std::vector<PackedObject> objects, std::shared_ptr<const DeflateCodes> codes) {
    auto item = std::make_unique<Item>();
    item->state = State::ToPrepare;
    item->bytes = std::move(body);
    item->dictionary = std::move(dictionary);
    item->packed = std::move(objects);
    item->codes = std::move(codes);
    item->objects.push_back({number, 0});
    push(std::move(item));
}

void OutputPipeline::copy(std::shared_ptr<InputFile> file, std::vector<FileRange> ranges) {
    std::uint64_t left = 0;
    for (const FileRange& range : ranges) left += range.length;
    for (FileRange range : ranges) {
        while (range.length > 0) {
            auto item = std::make_unique<Item>();
            item->state = State::ToPrepare;
            item->file = file;
            item->range = {range.offset, std::min(range.length, pieceBytes)};
            range = {range.offset + item->range.length, range.length - item->range.length};
            left -= item->range.length;
            item->isLastPiece = left == 0;
            push(std::move(item));
        }
    }
}

void OutputPipeline::copy(std::unique_ptr<DecryptingReader> reader) {
    auto item = std::make_unique<Item>();
    item->reader = std::move(reader);
    push(std::move(item));
}

void OutputPipeline::push(std::unique_ptr<Item> item) {
    std::unique_lock lock(mutex_);
    ahead_ += sizeOf(*item);
    const bool isWorthWaking = item->reader || ahead_ >= wakeBytes;
    items_.push_back(std::move(item));
    if (isWorthWaking) wakeWriter();
    while (ahead_ > mostAhead) {
        if (Item* todo = nextToPrepare()) {
            prepareForWriter(*todo, lock);
        } else {
            callerWaits_ = true;
            changed_.wait(lock);
            callerWaits_ = false;
        }
    }
}

/// Wakes the writer if it waits, once. The mutex must be held: so the writer cannot end before it is sent away.
void OutputPipeline::wakeWriter() {
    if (!writerWaits_) return;
    writerWaits_ = false;  // although it has not run yet: once is enough
    changed_.notify_all();
    sendAway(thread_);
}

bool OutputPipeline::finish() {
    if (!thread_.joinable()) return !failed_;
    {
        std::unique_lock lock(mutex_);
        done_ = true;
        wakeWriter();
        while (Item* todo = nextToPrepare()) prepareForWriter(*todo, lock);
    }
    thread_.join();
    spare_ = {};
    return !failed_;
}

std::string OutputPipeline::buffer(std::size_t bytes) {
    std::string buffer = takeSpare(bytes);
    buffer.clear();
    buffer.reserve(bytes);
    return buffer;
}

/// The smallest buffer that is large enough, with whatever was in it: one that is read into is not first filled with
/// zeros.
std::string OutputPipeline::takeSpare(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    const auto fitting = std::ranges::min_element(spare_, {}, [bytes](const std::string& buffer) {
        return buffer.capacity() >= bytes ? buffer.capacity() : SIZE_MAX;
    });
    if (fitting == spare_.end() || fitting->capacity() < bytes) return {};
    std::string buffer = std::move(*fitting);
    spare_.erase(fitting);
    return buffer;
}

void OutputPipeline::recycleLocked(std::string buffer) {
    constexpr std::size_t worthKeeping = 4096;
    constexpr std::size_t mostKept = 1U << 20U;
    if (buffer.capacity() >= worthKeeping && buffer.capacity() <= mostKept && spare_.size() < mostSpare)
        spare_.push_back(std::move(buffer));
}

OutputPipeline::Item* OutputPipeline::nextToPrepare() {
    const auto found = std::ranges::find(items_, State::ToPrepare, [](const auto& item) { return item->state; });
    return found == items_.end() ? nullptr : found->get();
}

void OutputPipeline::prepareUnlocked(Item& item, FastDeflater& deflater, std::unique_lock<std::mutex>& lock) {
    const std::size_t before = sizeOf(item);
    item.state = State::Preparing;
    lock.unlock();
    try {
        prepare(item, deflater);
    } catch (const std::exception&) {
        // There is not enough memory. Left in preparation the item would be waited for without end.
        item.isLost = true;
    }
    lock.lock();
    ahead_ = ahead_ - before + sizeOf(item);
    item.state = State::Ready;
}

void OutputPipeline::prepare(Item& item, FastDeflater& deflater) {
    if (item.file) read(item);
    if (!item.dictionary.empty()) deflate(item, deflater);
    for (const Sealed& data : item.sealed) {
        const auto room = static_cast<std::size_t>(Encryptor::lengthOf(data.length));
        encryptor_->seal(std::span(item.bytes).subspan(data.begin, room), data.length);
    }
}

/// On the caller's thread.
void OutputPipeline::prepareForWriter(Item& item, std::unique_lock<std::mutex>& lock) {
    prepareUnlocked(item, callersDeflater_, lock);
    wakeWriter();
}

void OutputPipeline::deflate(Item& item, FastDeflater& deflater) {
    writeObjectStreamIndex(item.packed, item.bytes);
    std::string deflated = takeSpare(item.bytes.size() / 2);
    deflater.deflate(item.bytes, *item.codes, deflated);
    item.bytes.swap(deflated);
    if (encryptor_) {
        item.sealed = {{0, item.bytes.size()}};
        item.bytes.insert(0, aesBlock, '\0');
        item.bytes.resize(static_cast<std::size_t>(Encryptor::lengthOf(item.sealed.front().length)));
    }
    const std::lock_guard lock(mutex_);
    recycleLocked(std::move(deflated));
}

void OutputPipeline::read(Item& item) {
    const auto length = static_cast<std::size_t>(item.range.length);
    item.bytes = takeSpare(pieceBytes);
    item.bytes.reserve(pieceBytes);
    item.bytes.resize(length);
    const std::size_t got = item.file->readAt(item.range.offset, std::span(item.bytes));
    item.wasShort = got < length;
    std::fill(item.bytes.begin() + static_cast<std::ptrdiff_t>(got), item.bytes.end(), '\0');
    if (!encryptor_) item.sum = checksum(item.bytes);
}

void OutputPipeline::run() {
    giveWay(3);
    const HeapRoom::Share share;
    FastDeflater deflater;
    std::unique_lock lock(mutex_);
    while (true) {
        if (!items_.empty() && items_.front()->state == State::Ready) {
            const std::unique_ptr<Item> item = std::move(items_.front());
            items_.pop_front();
            lock.unlock();
            writeItem(*item);
            lock.lock();
            ahead_ -= sizeOf(*item);
            recycleLocked(std::move(item->bytes));
            if (callerWaits_ && ahead_ <= mostAhead / 2) changed_.notify_all();
        } else if (Item* todo = nextToPrepare()) {
            prepareUnlocked(*todo, deflater, lock);
        } else if (done_ && items_.empty()) {
            lock.unlock();
            failed_ = !file_.flush() || failed_;
            return;
        } else {
            writerWaits_ = true;
            changed_.wait_for(lock, patience);
            writerWaits_ = false;
        }
    }
}

void OutputPipeline::writeItem(Item& item) {
    failed_ = failed_ || item.isLost;
    if (!item.dictionary.empty()) {
        places_.push_back({item.objects.front().number, file_.size()});
        put(std::to_string(item.objects.front().number) + " 0 obj\n<<" + item.dictionary +
            "/Filter/FlateDecode/Length " + std::to_string(item.bytes.size()) + ">>stream\n");
        put(item.bytes);
        put("\nendstream\nendobj\n");
        return;
    }
    for (const Placed& object : item.objects) places_.push_back({object.number, file_.size() + object.offset});
    if (item.reader) {
        writeDeciphered(*item.reader);
    } else if (item.file && encryptor_) {
        seal(item.bytes, item.isLastPiece);
    } else if (item.file) {
        put(item.bytes, item.sum);
    } else {
        put(item.bytes);
    }
    if (item.wasShort) noteShortened(item.file->path());
}

void OutputPipeline::writeDeciphered(DecryptingReader& reader) {
    for (auto piece = reader.next(); !piece.empty() && !failed_; piece = reader.next()) {
        if (encryptor_) {
            seal(piece, false);
        } else {
            put(piece);
        }
    }
    if (encryptor_) seal({}, true);
    if (reader.hasShortened()) noteShortened(reader.file()->path());
}

/// Enciphers and writes a piece of a stream's data.
void OutputPipeline::seal(std::string_view piece, bool isLast) {
    if (!sealing_) sealing_.emplace(*encryptor_);
    put(sealing_->next(piece));
    if (!isLast) return;
    put(sealing_->finish());
    sealing_.reset();
}

void OutputPipeline::noteShortened(const std::string& path) {
    if (std::ranges::find(shortened_, path) == shortened_.end()) shortened_.push_back(path);
}

void OutputPipeline::put(std::string_view bytes) {
    put(bytes, checksum(bytes));
}

void OutputPipeline::put(std::string_view bytes, std::uint32_t sum) {
    // A checksum of each piece goes into the digest: much quicker than a hash of everything, and quite enough for
    // telling files apart.
    XXH3_128bits_update(hash_.get(), &sum, sizeof sum);
    if (!failed_) failed_ = !file_.write(bytes);
}

}  // namespace quillon::pdf
