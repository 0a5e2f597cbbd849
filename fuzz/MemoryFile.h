#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace quillon::fuzz {

/// A regular file that exists in memory only and has a path as long as the object lives.
class MemoryFile {
public:
    /// Ends the program when there is no memory for it: that is no finding.
    explicit MemoryFile(std::span<const std::uint8_t> bytes);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    [[nodiscard]] std::string path() const;

private:
    int descriptor_;
};

}  // namespace quillon::fuzz
