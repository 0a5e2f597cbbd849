#include "fuzz/MemoryFile.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace quillon::fuzz {

MemoryFile::MemoryFile(std::span<const std::uint8_t> bytes) : descriptor_(::memfd_create("input", MFD_CLOEXEC)) {
    if (descriptor_ < 0) std::_Exit(EXIT_FAILURE);
    while (!bytes.empty()) {
        const ssize_t done = ::write(descriptor_, bytes.data(), bytes.size());
        if (done <= 0) std::_Exit(EXIT_FAILURE);
        bytes = bytes.subspan(static_cast<std::size_t>(done));
    }
}

MemoryFile::~MemoryFile() {
    ::close(descriptor_);
}

std::string MemoryFile::path() const {
    return "/proc/self/fd/" + std::to_string(descriptor_);
}

}  // namespace quillon::fuzz
