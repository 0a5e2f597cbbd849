#include "filelist/ValidatePDF.h"

#include <array>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {
namespace {

bool isRegularFile(const struct stat& status) {
    return S_ISREG(status.st_mode);
}

/// -1 when the file cannot be opened or is not a regular one.
int openRegularFile(const char* path) {
    struct stat status {};
    if (stat(path, &status) != 0 || !isRegularFile(status)) return -1;
    // Something else may have taken its place by now.
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return -1;
    if (fstat(descriptor, &status) == 0 && isRegularFile(status)) return descriptor;
    close(descriptor);
    return -1;
}

}  // namespace

bool ValidatePDF::isPDFValidate(const char* path) {
    const int descriptor = openRegularFile(path);
    if (descriptor < 0) return false;
    constexpr std::size_t headerLength = 4;
    std::array<char, 10> buffer{};
    const ssize_t length = read(descriptor, buffer.data(), headerLength);
    close(descriptor);
    return length >= 0 && std::strcmp(buffer.data(), "%PDF") == 0;
}

}  // namespace quillon
