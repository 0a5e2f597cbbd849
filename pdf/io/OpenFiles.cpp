#include "pdf/io/OpenFiles.h"

#include "pdf/io/InputFile.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace quillon::pdf {

Descriptor::~Descriptor() {
    ::close(number_);
}

OpenFiles& OpenFiles::instance() {
    static OpenFiles files;
    return files;
}

void OpenFiles::add(const InputFile& file, std::shared_ptr<Descriptor> descriptor) {
    static_cast<void>(keep(file, std::move(descriptor)));
}

std::shared_ptr<Descriptor> OpenFiles::acquire(const InputFile& file) {
    if (auto open = find(file)) return open;
    // Others go on reading meanwhile. Whoever opens the same file at the same time is found again by keep().
    auto descriptor = InputFile::openDescriptor(file.path_);
    if (!descriptor || InputFile::identify(*descriptor) != file.identity_) return nullptr;
    return keep(file, std::move(descriptor));
}

void OpenFiles::remove(const InputFile& file) {
    std::shared_ptr<Descriptor> closed;  // outside the lock
    const std::lock_guard lock(mutex_);
    const auto open = std::ranges::find(open_, &file, &Open::file);
    if (open == open_.end()) return;
    closed = std::move(open->descriptor);
    open_.erase(open);
}

std::shared_ptr<Descriptor> OpenFiles::find(const InputFile& file) {
    const std::lock_guard lock(mutex_);
    return findLocked(file);
}

std::shared_ptr<Descriptor> OpenFiles::findLocked(const InputFile& file) {
    const auto open = std::ranges::find(open_, &file, &Open::file);
    if (open == open_.end()) return nullptr;
    open->lastUse = ++clock_;
    return open->descriptor;
}

std::shared_ptr<Descriptor> OpenFiles::keep(const InputFile& file, std::shared_ptr<Descriptor> descriptor) {
    std::shared_ptr<Descriptor> closed;  // outside the lock
    const std::lock_guard lock(mutex_);
    if (auto open = findLocked(file)) {
        closed = std::move(descriptor);
        return open;
    }
    if (open_.size() == limit) {
        const auto oldest = std::ranges::min_element(open_, {}, &Open::lastUse);
        closed = std::move(oldest->descriptor);
        open_.erase(oldest);
    }
    return open_.emplace_back(Open{&file, std::move(descriptor), ++clock_}).descriptor;
}

}  // namespace quillon::pdf
