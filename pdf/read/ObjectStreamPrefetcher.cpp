#include "pdf/read/ObjectStreamPrefetcher.h"

#include "pdf/io/BackgroundThread.h"
#include "pdf/io/HeapRoom.h"

namespace quillon::pdf {

ObjectStreamPrefetcher::~ObjectStreamPrefetcher() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void ObjectStreamPrefetcher::expect(const std::shared_ptr<InputFile>& file, const std::vector<Wanted>& streams,
                                    const std::shared_ptr<const Decryptor>& decryptor) {
    if (streams.empty()) return;
    const std::lock_guard lock(mutex_);
    for (const Wanted& stream : streams) {
        const Key key{file.get(), stream.number};
        if (!jobs_.try_emplace(key, Job{file, decryptor, stream.offset, State::Waiting, nullptr}).second) continue;
        order_.push_back(key);
    }
    wakeReader();
    if (!thread_.joinable()) thread_ = backgroundThread([this] { run(); });
}

/// The reader, once it is far enough ahead, sleeps until half of that is used: waking it costs more than it looks.
void ObjectStreamPrefetcher::wakeReader() {
    if (readerWaits_ && ahead_ <= mostAhead / 2) changed_.notify_all();
}

/// Waits a little while for a stream that is being read; to its end if it has much data, once that is there.
bool ObjectStreamPrefetcher::isReadSoon(const Job& job, std::unique_lock<std::mutex>& lock) {
    const auto isRead = [&job] { return job.state == State::Ready; };
    takerWaits_ = true;
    if (!changed_.wait_for(lock, patience, isRead) && dataBytes_ > longStream) changed_.wait(lock, isRead);
    takerWaits_ = false;
    return isRead();
}

std::shared_ptr<const ObjectStream> ObjectStreamPrefetcher::take(const InputFile& file, std::uint32_t number) {
    std::unique_lock lock(mutex_);
    const auto job = jobs_.find({&file, number});
    if (job == jobs_.end() || job->second.state == State::Unwanted) return nullptr;
    if (job->second.state == State::Reading && !isReadSoon(job->second, lock)) {
        job->second.state = State::Unwanted;
        return nullptr;
    }
    auto objects = std::move(job->second.objects);
    jobs_.erase(job);
    if (objects) {
        ahead_ -= objects->bytes().size();
        wakeReader();
    }
    return objects;
}

void ObjectStreamPrefetcher::forget(const InputFile& file) {
    const std::lock_guard lock(mutex_);
    for (auto next = jobs_.lower_bound({&file, 0}); next != jobs_.end() && next->first.first == &file;) {
        const auto job = next++;
        if (job->second.state == State::Reading) job->second.state = State::Unwanted;
        if (job->second.state == State::Unwanted) continue;
        if (job->second.objects) ahead_ -= job->second.objects->bytes().size();
        jobs_.erase(job);
    }
    wakeReader();
}

void ObjectStreamPrefetcher::run() {
    giveWay(5);
    const HeapRoom::Share share;
    std::unique_lock lock(mutex_);
    while (!stop_) {
        if (order_.empty() || ahead_ > mostAhead) {
            readerWaits_ = true;
            changed_.wait(lock);
            readerWaits_ = false;
        } else {
            readNext(lock);
        }
    }
}

void ObjectStreamPrefetcher::readNext(std::unique_lock<std::mutex>& lock) {
    const Key key = order_.front();
    order_.pop_front();
    const auto job = jobs_.find(key);
    if (job == jobs_.end() || job->second.state != State::Waiting) return;
    job->second.state = State::Reading;  // keeps the job where it is
    const std::shared_ptr<InputFile> input = job->second.file;
    const std::shared_ptr<const Decryptor> decryptor = job->second.decryptor;
    const std::uint64_t offset = job->second.offset;
    lock.unlock();
    if (!file_ || &file_->file() != input.get()) file_ = std::make_unique<BlockCache>(input, blockBytes);
    auto objects = read(decryptor.get(), key.second, offset);
    lock.lock();
    dataBytes_ = 0;
    if (job->second.state == State::Unwanted) {
        jobs_.erase(job);
        lock.unlock();
        objects.reset();
        lock.lock();
        return;
    }
    if (objects) ahead_ += objects->bytes().size();
    job->second.objects = std::move(objects);
    job->second.state = State::Ready;
    if (takerWaits_) changed_.notify_all();
}

/// Only a stream that describes itself without other objects can be read apart from the rest of its file.
std::shared_ptr<const ObjectStream> ObjectStreamPrefetcher::read(const Decryptor* decryptor, std::uint32_t number,
                                                                 std::uint64_t offset) {
    bool plain = true;
    auto stream = readStreamAt(*file_, offset, [&plain](Reference) {
        plain = false;
        return Object();
    });
    if (!stream || !plain || stream->reference.number != number) return nullptr;
    dataBytes_ = stream->data.size();
    for (const char* key : {"N", "First", "Filter", "DecodeParms"}) {
        if (stream->dictionary[key].reference()) return nullptr;
    }
    if (decryptor && !decryptor->decrypt(stream->reference, stream->dictionary, stream->data)) return nullptr;
    return ObjectStream::decode(*stream);
}

}  // namespace quillon::pdf
