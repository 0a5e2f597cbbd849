#include "pdf/io/InputFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quillon::pdf {

namespace {

std::optional<FileIdentity> identityFrom(const struct stat& status) {
    if (!S_ISREG(status.st_mode)) return std::nullopt;
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    return FileIdentity{status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
                        status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

}  // namespace

std::shared_ptr<InputFile> InputFile::open(const std::string& path) {
    auto descriptor = openDescriptor(path);
    if (!descriptor) return nullptr;
    const auto identity = identify(*descriptor);
    if (!identity) return nullptr;
    auto file = std::make_shared<InputFile>(Passkey(), path, *identity);
    OpenFiles::instance().add(*file, std::move(descriptor));
    return file;
}

std::optional<FileIdentity> InputFile::identityOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return identityFrom(status);
}

InputFile::InputFile(Passkey, std::string path, const FileIdentity& identity)
    : path_(std::move(path)), identity_(identity) {}

InputFile::~InputFile() {
    OpenFiles::instance().remove(*this);
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<char> into) {
    const auto descriptor = OpenFiles::instance().acquire(*this);
    if (!descriptor) return 0;
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t got =
            ::pread(descriptor->number(), into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

std::shared_ptr<Descriptor> InputFile::openDescriptor(const std::string& path) {
    // The type is asked first because merely opening a device can have effects; O_NONBLOCK covers a FIFO that takes the
    // file's place in between.
    if (!identityOf(path)) return nullptr;
    const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (number < 0) return nullptr;
    return std::make_shared<Descriptor>(number);
}

std::optional<FileIdentity> InputFile::identify(const Descriptor& descriptor) {
    struct stat status {};
    if (::fstat(descriptor.number(), &status) != 0) return std::nullopt;
    return identityFrom(status);
}

}  // namespace quillon::pdf
