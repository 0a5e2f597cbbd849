#include "pdf/read/SourceRegistry.h"

#include "pdf/read/Source.h"

#include <algorithm>
#include <utility>

namespace quillon::pdf {

SourceRegistry& SourceRegistry::instance() {
    static SourceRegistry registry;
    return registry;
}

std::shared_ptr<Source> SourceRegistry::find(const FileIdentity& identity) {
    const std::lock_guard lock(mutex_);
    return findLocked(identity);
}

/// A source takes itself out before it ends, so every pointer leads to one; one that is just ending gives null.
std::shared_ptr<Source> SourceRegistry::findLocked(const FileIdentity& identity) {
    if (buckets_.empty()) return nullptr;
    for (Source* at = bucketOf(identity.inode); at; at = at->nextInRegistry_) {
        if (at->file()->identity() != identity) continue;
        if (auto source = at->weak_from_this().lock()) return source;
    }
    return nullptr;
}

Source*& SourceRegistry::bucketOf(std::uint64_t inode) noexcept {
    return buckets_[inode % buckets_.size()];
}

void SourceRegistry::addBuckets() {
    constexpr std::size_t least = 64;
    std::vector<Source*> old(std::max(least, 2 * buckets_.size()));
    old.swap(buckets_);
    for (Source* source : old) {
        while (source) {
            Source*& bucket = bucketOf(source->file()->identity().inode);
            Source* const next = std::exchange(source->nextInRegistry_, bucket);
            bucket = std::exchange(source, next);
        }
    }
}

std::shared_ptr<Source> SourceRegistry::add(const std::shared_ptr<Source>& source) {
    const std::lock_guard lock(mutex_);
    const FileIdentity& identity = source->file()->identity();
    if (auto earlier = findLocked(identity)) return earlier;
    if (count_++ == buckets_.size()) addBuckets();
    Source*& bucket = bucketOf(identity.inode);
    source->nextInRegistry_ = std::exchange(bucket, source.get());
    return source;
}

void SourceRegistry::remove(Source& source) {
    const std::lock_guard lock(mutex_);
    forget(source);
    if (buckets_.empty()) return;
    Source** at = &bucketOf(source.file()->identity().inode);
    while (*at && *at != &source) at = &(*at)->nextInRegistry_;
    if (!*at) return;  // a source that could not be loaded
    *at = source.nextInRegistry_;
    --count_;
}

bool SourceRegistry::keep(const Source& source, std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    forget(source);
    if (bytes > source.file()->size() / leastRatio || keptBytes_ + bytes > mostKept) return false;
    kept_[&source] = bytes;
    keptBytes_ += bytes;
    return true;
}

void SourceRegistry::drop(const Source& source) {
    const std::lock_guard lock(mutex_);
    forget(source);
}

void SourceRegistry::forget(const Source& source) {
    const auto found = kept_.find(&source);
    if (found == kept_.end()) return;
    keptBytes_ -= found->second;
    kept_.erase(found);
}

}  // namespace quillon::pdf
