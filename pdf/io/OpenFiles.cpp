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
    const std::lock_guard lock(mutex_);
    addLocked(file, std::move(descriptor));
}

std::shared_ptr<Descriptor> OpenFiles::acquire(const InputFile& file) {
    const std::lock_guard lock(mutex_);
    if (const auto open = std::ranges::find(open_, &file, &Open::file); open != open_.end()) {
        open->lastUse = ++clock_;
        return open->descriptor;
    }
    auto descriptor = InputFile::openDescriptor(file.path_);
    if (!descriptor || InputFile::identify(*descriptor) != file.identity_) return nullptr;
    return addLocked(file, std::move(descriptor));
}

void OpenFiles::remove(const InputFile& file) {
    const std::lock_guard lock(mutex_);
    std::erase_if(open_, [&](const Open& open) { return open.file == &file; });
}

std::shared_ptr<Descriptor> OpenFiles::addLocked(const InputFile& file, std::shared_ptr<Descriptor> descriptor) {
    if (open_.size() == limit) open_.erase(std::ranges::min_element(open_, {}, &Open::lastUse));
    return open_.emplace_back(Open{&file, std::move(descriptor), ++clock_}).descriptor;
}

}  // namespace quillon::pdf
