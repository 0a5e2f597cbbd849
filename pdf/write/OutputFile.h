#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// A file that comes into being whole or not at all: written without a name in the target's folder, or under a
/// temporary one where the file system cannot do that, synced, and put in the target's place by a rename. Until
/// `commit` succeeds, what stood at the target stays as it was; without it, nothing is left behind. Used by one thread
/// at a time.
class OutputFile {
public:
    /// Null when nothing can be written in the target's folder, or when a folder, device or the like stands at
    /// `target`. A symbolic link is followed: the file that it leads to is replaced.
    [[nodiscard]] static std::unique_ptr<OutputFile> create(const std::string& target);

    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// Appends `data`. False on failure, as when the disk is full; then every later call fails too.
    bool write(std::string_view data);
    /// Bytes written so far.
    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }

    /// Puts the file in the target's place. With `sync`, only after its bytes have reached the disk. False on failure.
    [[nodiscard]] bool commit(bool sync);

private:
    OutputFile(std::string target, int descriptor, std::string temporary);

    bool giveName();
    void takeModeOfTarget();

    std::string target_;
    std::string temporary_;  // empty while the file has no name
    int descriptor_;
    std::uint64_t size_ = 0;
    bool failed_ = false;
};

}  // namespace quillon::pdf
