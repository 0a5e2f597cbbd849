#include "pdf/read/SourceRegistry.h"

#include "pdf/read/Source.h"

#include <algorithm>

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
    const auto [begin, end] = sources_.equal_range(identity.inode);
    for (auto at = begin; at != end; ++at) {
        if (at->second->file()->identity() != identity) continue;
        if (auto source = at->second->weak_from_this().lock()) return source;
    }
    return nullptr;
}

std::shared_ptr<Source> SourceRegistry::add(const std::shared_ptr<Source>& source) {
    const std::lock_guard lock(mutex_);
    const FileIdentity& identity = source->file()->identity();
    if (auto earlier = findLocked(identity)) return earlier;
    sources_.emplace(identity.inode, source.get());
    return source;
}

void SourceRegistry::remove(Source& source) {
    const std::lock_guard lock(mutex_);
    forget(source);
    const auto [begin, end] = sources_.equal_range(source.file()->identity().inode);
    const auto own = std::find_if(begin, end, [&](const auto& entry) { return entry.second == &source; });
    if (own != end) sources_.erase(own);
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
