#include "pdf/read/SourceRegistry.h"

#include <algorithm>

#include "pdf/read/Source.h"

namespace quillon::pdf {

SourceRegistry& SourceRegistry::instance() {
    static SourceRegistry registry;
    return registry;
}

std::shared_ptr<Source> SourceRegistry::find(const FileIdentity& identity) {
    const std::lock_guard lock(mutex_);
    const auto found = sources_.find(identity);
    return found == sources_.end() ? nullptr : found->second.lock();
}

std::shared_ptr<Source> SourceRegistry::add(const std::shared_ptr<Source>& source) {
    std::shared_ptr<Source> result = source;
    {
        const std::lock_guard lock(mutex_);
        std::weak_ptr<Source>& place = sources_[source->file()->identity()];
        if (auto earlier = place.lock()) {
            result = std::move(earlier);
        } else {
            place = source;
            loaded_.push_front(source.get());
            dropOldest();
        }
    }
    return result;  // outside the lock, since a rejected source calls remove() when it dies
}

void SourceRegistry::remove(Source& source) {
    const std::lock_guard lock(mutex_);
    loaded_.remove(&source);
    const auto found = sources_.find(source.file()->identity());
    if (found != sources_.end() && found->second.expired()) sources_.erase(found);
}

void SourceRegistry::used(Source& source) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find(loaded_, &source);
    if (found == loaded_.end()) {
        loaded_.push_front(&source);
        dropOldest();
    } else {
        loaded_.splice(loaded_.begin(), loaded_, found);
    }
}

/// A source that another thread is using is passed over: waiting for it here could wait for ever.
void SourceRegistry::dropOldest() {
    for (auto at = loaded_.end(); loaded_.size() > mostLoaded && at != loaded_.begin();) {
        --at;
        if (at == loaded_.begin()) return;
        const std::unique_lock lock((*at)->mutex_, std::try_to_lock);
        if (!lock) continue;
        (*at)->document_.reset();
        at = loaded_.erase(at);
    }
}

}  // namespace quillon::pdf
