#include "pdf/read/ContentScout.h"

#include "pdf/filter/Filters.h"
#include "pdf/io/BackgroundThread.h"
#include "pdf/object/ContentBalance.h"
#include "pdf/object/DictionaryScanner.h"
#include "pdf/object/Parser.h"
#include "pdf/read/Limits.h"
#include "pdf/read/StreamText.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

bool refersToOthers(const Object& object) {
    if (object.reference()) return true;
    const Array* array = object.array();
    return array && std::ranges::any_of(*array, [](const Object& element) { return element.reference() != nullptr; });
}

/// The only stream of a page's content; nothing when there is another number of them.
std::optional<Reference> onlyStream(std::string_view contents) {
    const Object value = Parser(contents).parse();
    if (value.reference()) return *value.reference();
    if (!value.array() || value.array()->size() != 1 || !value.array()->front().reference()) return std::nullopt;
    return *value.array()->front().reference();
}

}  // namespace

ContentScout::~ContentScout() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void ContentScout::expect(SourceDocument& document, const PageTree::Page& page) {
    // What is enciphered needs keys, which are the document's.
    if (document.isEncrypted()) return;
    const auto stream = onlyStream(findValue(document.pageText(page), "Contents"));
    ObjectReader& reader = document.reader();
    if (!stream || !reader.exists(*stream)) return;
    const CrossReferenceEntry entry = reader.table().entries.get(stream->number);
    if (entry.kind != CrossReferenceEntry::Kind::InFile) return;
    const std::shared_ptr<InputFile>& file = reader.file().sharedFile();
    const std::lock_guard lock(mutex_);
    const Key key{file.get(), stream->number};
    if (!jobs_.try_emplace(key, Job{file, entry.place, State::Waiting, std::nullopt}).second) return;
    order_.push_back(key);
    if (!thread_.joinable()) thread_ = backgroundThread([this] { run(); });
    if (scoutWaits_) changed_.notify_all();
}

std::optional<bool> ContentScout::take(SourceDocument& document, std::uint32_t number) {
    std::unique_lock lock(mutex_);
    ObjectReader& reader = document.reader();
    const auto job = jobs_.find({&reader.file().file(), number});
    if (job == jobs_.end()) return std::nullopt;
    // After a repair another object may have the number.
    if (reader.table().entries.get(number).place != job->second.offset) return std::nullopt;
    takerWaits_ = true;
    while (job->second.state == State::Looking) changed_.wait(lock);
    takerWaits_ = false;
    const auto balanced = job->second.balanced;
    jobs_.erase(job);
    return balanced;
}

void ContentScout::run() {
    std::unique_lock lock(mutex_);
    while (!stop_) {
        if (order_.empty()) {
            scoutWaits_ = true;
            changed_.wait(lock);
            scoutWaits_ = false;
        } else {
            lookAtNext(lock);
        }
    }
}

void ContentScout::lookAtNext(std::unique_lock<std::mutex>& lock) {
    const Key key = order_.front();
    order_.pop_front();
    const auto job = jobs_.find(key);
    if (job == jobs_.end() || job->second.state != State::Waiting) return;
    job->second.state = State::Looking;  // keeps the job where it is until it is Ready
    const std::shared_ptr<InputFile> input = job->second.file;
    const std::uint64_t offset = job->second.offset;
    lock.unlock();
    if (!file_ || &file_->file() != input.get()) file_ = std::make_unique<BlockCache>(input);
    const auto balanced = look(*file_, key.second, offset);
    lock.lock();
    job->second.balanced = balanced;
    job->second.state = State::Ready;
    if (takerWaits_) changed_.notify_all();
}

/// Only a stream that describes itself without other objects can be read apart from the rest of its file, and only if
/// its length is right: where the data of others ends depends on the objects around them.
std::optional<bool> ContentScout::look(BlockCache& file, std::uint32_t number, std::uint64_t offset) {
    const auto stream = readStreamAt(file, offset);
    if (!stream || stream->reference.number != number) return std::nullopt;
    if (stream->dictionary["Length"].integer() != static_cast<std::int64_t>(stream->data.size())) return std::nullopt;
    for (const char* key : {"Filter", "DecodeParms"}) {
        if (refersToOthers(stream->dictionary[key])) return std::nullopt;
    }
    const auto content = decodeStream(stream->dictionary, stream->data, limits::decodedStream);
    if (!content) return std::nullopt;
    return isBalanced(*content);
}

}  // namespace quillon::pdf
