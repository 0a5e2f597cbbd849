#pragma once

#include "pdf/io/FileIdentity.h"
#include "pdf/io/OpenFiles.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace quillon::pdf {

/// A regular file that is read at given offsets.
///
/// The file is never mapped, so an input that is cut short, replaced or unplugged while it is read gives short reads
/// and no signal. Of all InputFiles of the program only a few are open at a time (see OpenFiles): the descriptor of one
/// that was not read for a while is closed, and opened again, with its identity checked, when it is next read. Every
/// operation may be called from any thread.
class InputFile {
    struct Passkey {};

public:
    /// Only for open().
    InputFile(Passkey, std::string path, const FileIdentity& identity);

    /// Opens `path` (file system encoding). Null when it does not exist, may not be read, or is no regular file; a FIFO
    /// or a device is recognised without waiting for it.
    [[nodiscard]] static std::shared_ptr<InputFile> open(const std::string& path);

    /// The identity of the file at `path` now; nothing when there is no regular file.
    [[nodiscard]] static std::optional<FileIdentity> identityOf(const std::string& path);

    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] const FileIdentity& identity() const noexcept { return identity_; }
    [[nodiscard]] std::uint64_t size() const noexcept { return identity_.size; }

    /// Reads up to `into.size()` bytes from `offset`. Returns the bytes read: fewer at the end of the file, when it has
    /// changed since it was opened, and on an input error.
    [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<char> into);

private:
    friend class OpenFiles;
    [[nodiscard]] static std::shared_ptr<Descriptor> openDescriptor(const std::string& path);
    [[nodiscard]] static std::optional<FileIdentity> identify(const Descriptor& descriptor);

    std::string path_;
    FileIdentity identity_;
};

}  // namespace quillon::pdf
