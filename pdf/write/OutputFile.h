#pragma once

#include <cstddef>
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

    /// Appends `data`; little of it is gathered, to be written with what comes next. False on failure, as when the disk
    /// is full, be it of what was gathered; then every later call fails too.
    bool write(std::string_view data);
    /// Writes what was gathered. False on failure, also of an earlier call.
    [[nodiscard]] bool flush();
    /// Bytes appended so far.
    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }

    /// Puts the file in the target's place. With `sync`, only after its bytes have reached the disk; without, a power
    /// cut soon after may leave neither file. False on failure.
    [[nodiscard]] bool commit(bool sync);

private:
    OutputFile(std::string target, int descriptor, std::string temporary);

    bool writeOut(std::string_view data);
    void reserve(std::uint64_t end);
    bool giveName();
    void takeModeOfTarget();

    // Bytes from which on a call of the system pays: from there on the page cache takes them in large pieces.
    static constexpr std::size_t worthWriting = 64U << 10U;
    // What is written ends at a multiple of this, unless it is flushed: a piece that begins anywhere else is taken in
    // small ones first.
    static constexpr std::size_t alignment = 64U << 10U;
    // On ext4 disk space is taken ahead of what is written, this many bytes at a time: it has nothing to find out for
    // each block then, and takes the bytes in half the time. Xfs and tmpfs are slower with it.
    static constexpr std::uint64_t reservedAtATime = 8U << 20U;

    std::string target_;
    std::string temporary_;  // empty while the file has no name
    int descriptor_;
    std::string gathered_;  // appended, and not written yet
    std::uint64_t size_ = 0;
    bool reserves_;               // whether disk space is taken ahead
    std::uint64_t reserved_ = 0;  // bytes from the beginning for which it was asked; may have failed for the last
    bool failed_ = false;
};

}  // namespace quillon::pdf
