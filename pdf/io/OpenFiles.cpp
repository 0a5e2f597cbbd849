#include "pdf/io/OpenFiles.h"

#include "pdf/io/InputFile.h"

#include <algorithm>
#include <unistd.h>

namespace quillon::pdf {

Descriptor::~Descriptor() {
    ::close(number_);
}

OpenFiles& OpenFiles::instance() {
    static OpenFiles files;
    return files;
}

void OpenFiles::add(InputFile& file) {
    const std::lock_guard lock(mutex_);
    makeRoom();
    file.lastUse_ = ++clock_;
    open_.push_back(&file);
}

std::shared_ptr<Descriptor> OpenFiles::acquire(InputFile& file) {
    const std::lock_guard lock(mutex_);
    file.lastUse_ = ++clock_;
    if (file.descriptor_) return file.descriptor_;
    auto descriptor = InputFile::openDescriptor(file.path_);
    if (!descriptor || InputFile::identify(*descriptor) != file.identity_) return nullptr;
    makeRoom();
    file.descriptor_ = std::move(descriptor);
    open_.push_back(&file);
    return file.descriptor_;
}

void OpenFiles::remove(InputFile& file) {
    const std::lock_guard lock(mutex_);
    std::erase(open_, &file);
    file.descriptor_.reset();
}

void OpenFiles::makeRoom() {
    if (open_.size() < limit) return;
    const auto oldest = std::ranges::min_element(open_, {}, &InputFile::lastUse_);
    (*oldest)->descriptor_.reset();
    open_.erase(oldest);
}

}  // namespace quillon::pdf
