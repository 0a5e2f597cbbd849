#include "pdf/read/SourceRegistry.h"

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
    const std::lock_guard lock(mutex_);
    std::weak_ptr<Source>& place = sources_[source->file()->identity()];
    if (auto earlier = place.lock()) return earlier;
    place = source;
    return source;
}

void SourceRegistry::remove(Source& source) {
    const std::lock_guard lock(mutex_);
    forget(source);
    const auto found = sources_.find(source.file()->identity());
    if (found != sources_.end() && found->second.expired()) sources_.erase(found);
}

bool SourceRegistry::keep(const Source& source, std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    forget(source);
    if (keptBytes_ + bytes > mostKept) return false;
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
