#include "pdf/write/OutputFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <linux/magic.h>
#include <random>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <utility>

namespace quillon::pdf {

namespace {

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// The file behind symbolic links; the path itself when there is none yet.
std::string followLinks(const std::string& path) {
    std::array<char, PATH_MAX> resolved{};
    if (::realpath(path.c_str(), resolved.data())) return resolved.data();
    // A link to a file that is not there yet.
    const ssize_t length = ::readlink(path.c_str(), resolved.data(), resolved.size());
    if (length <= 0) return path;
    const std::string next(resolved.data(), static_cast<std::size_t>(length));
    return next.front() == '/' ? next : folderOf(path) + '/' + next;
}

/// For writing only, which the interface does not say.
iovec asVector(std::string_view part) {
    return {const_cast<char*>(part.data()), part.size()};
}

/// Or on ext2 or ext3, which take no space ahead.
bool isOnExt4(int descriptor) {
    struct statfs status {};
    return ::fstatfs(descriptor, &status) == 0 && status.f_type == EXT4_SUPER_MAGIC;
}

std::string temporaryName(const std::string& folder) {
    std::random_device random;
    return folder + "/.quillon-" + std::to_string(::getpid()) + '-' + std::to_string(random());
}

}  // namespace

std::unique_ptr<OutputFile> OutputFile::create(const std::string& target) {
    const std::string place = followLinks(target);
    struct stat status {};
    const bool exists = ::lstat(place.c_str(), &status) == 0;
    if (exists && (!S_ISREG(status.st_mode) || ::access(place.c_str(), W_OK) != 0)) return nullptr;
    const std::string folder = folderOf(place);
    // What replaces a private file must be private before it takes its place.
    constexpr mode_t usual = 0666;
    constexpr mode_t permissions = 0777;
    const mode_t mode = exists ? status.st_mode & permissions : usual;
    std::string temporary;
    // A file without a name disappears by itself, even when the program is killed.
    // To be named later it needs the process's own view of its descriptors.
    const bool canName = ::access("/proc/self/fd", X_OK) == 0;
    int descriptor = canName ? ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode) : -1;
    if (descriptor < 0) {
        temporary = temporaryName(folder);
        descriptor = ::open(temporary.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, mode);
    }
    if (descriptor < 0) return nullptr;
    return std::unique_ptr<OutputFile>(new OutputFile(place, descriptor, std::move(temporary)));
}

OutputFile::OutputFile(std::string target, int descriptor, std::string temporary)
    : target_(std::move(target)),
      temporary_(std::move(temporary)),
      descriptor_(descriptor),
      reserves_(isOnExt4(descriptor)) {}

OutputFile::~OutputFile() {
    ::close(descriptor_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

bool OutputFile::write(std::string_view data) {
    if (failed_) return false;
    size_ += data.size();
    const std::size_t surplus = size_ % alignment;
    if (gathered_.size() + data.size() < worthWriting || data.size() < surplus) {
        gathered_ += data;
        return true;
    }
    reserve(size_);
    const std::size_t whole = data.size() - surplus;
    if (!writeOut(data.substr(0, whole))) return false;
    gathered_ = data.substr(whole);
    return true;
}

bool OutputFile::flush() {
    return !failed_ && writeOut({});
}

/// Writes what was gathered, and `data` behind it.
bool OutputFile::writeOut(std::string_view data) {
    std::array<std::string_view, 2> parts{gathered_, data};
    while (!failed_ && !(parts[0].empty() && parts[1].empty())) {
        const std::array<iovec, 2> vectors{asVector(parts[0]), asVector(parts[1])};
        const ssize_t done = ::writev(descriptor_, vectors.data(), vectors.size());
        if (done < 0 && errno == EINTR) continue;
        failed_ = done <= 0;
        for (std::size_t left = failed_ ? 0 : static_cast<std::size_t>(done); std::string_view & part : parts) {
            const std::size_t written = std::min(left, part.size());
            part.remove_prefix(written);
            left -= written;
        }
    }
    gathered_.clear();
    return !failed_;
}

/// On ext4 takes disk space for the first `end` bytes and some more. Where that fails, as on a disk so full that only
/// the bytes themselves may fit, they are written without.
void OutputFile::reserve(std::uint64_t end) {
    while (reserves_ && reserved_ < end) {
        const auto from = static_cast<off_t>(reserved_);
        reserves_ = ::fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, from, static_cast<off_t>(reservedAtATime)) == 0;
        reserved_ += reservedAtATime;
    }
}

bool OutputFile::commit(bool sync) {
    if (!flush()) return false;
    if (reserved_ > 0) {
        // Gives back the space that was taken and is not needed; a file that keeps it is not wrong.
        [[maybe_unused]] const int result = ::ftruncate(descriptor_, static_cast<off_t>(size_));
    }
    takeModeOfTarget();
    if (sync && ::fsync(descriptor_) != 0) return false;
    if (temporary_.empty() && !giveName()) return false;
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) return false;
    temporary_.clear();
    if (sync) {
        // The new name must outlive a power cut as well; a file system that cannot sync a folder is no reason to fail.
        const int folder = ::open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            ::fsync(folder);
            ::close(folder);
        }
    }
    return true;
}

bool OutputFile::giveName() {
    const std::string self = "/proc/self/fd/" + std::to_string(descriptor_);
    std::string name = temporaryName(folderOf(target_));
    if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) return false;
    temporary_ = std::move(name);
    return true;
}

void OutputFile::takeModeOfTarget() {
    struct stat status {};
    constexpr mode_t permissions = 0777;
    if (::stat(target_.c_str(), &status) == 0) ::fchmod(descriptor_, status.st_mode & permissions);
}

}  // namespace quillon::pdf
