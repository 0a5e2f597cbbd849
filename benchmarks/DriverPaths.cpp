#include "benchmarks/DriverPaths.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {
namespace {

bool descriptorBeginsAsPdf(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
    std::array<char, 4> head{};
    ssize_t got = 0;
    do {
        got = ::pread(descriptor, head.data(), head.size(), 0);
    } while (got < 0 && errno == EINTR);
    return got == static_cast<ssize_t>(head.size()) && std::memcmp(head.data(), "%PDF", head.size()) == 0;
}

}  // namespace

// QFileInfo would take a name that begins with a colon for one of a resource.
QUrl driverFileUrl(const QString& path) {
    const bool isAbsolute = path.startsWith(QLatin1Char('/'));
    return QUrl::fromLocalFile(isAbsolute ? path : QDir::currentPath() + QLatin1Char('/') + path);
}

bool beginsAsPdf(const QString& path) {
    // Without O_NONBLOCK opening a FIFO waits until somebody writes to it.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return false;
    const bool result = descriptorBeginsAsPdf(descriptor);
    ::close(descriptor);
    return result;
}

}  // namespace quillon
