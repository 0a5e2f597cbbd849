#pragma once

#include <string>

namespace quillon::fuzz {

/// A folder of this process for files to be written, in memory where the system has such a place. It is removed with
/// its files when the object ends.
class ScratchFolder {
public:
    /// Ends the program when no folder can be made.
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    /// The path of a file with this name in the folder.
    [[nodiscard]] std::string file(const std::string& name) const { return path_ + '/' + name; }

private:
    std::string path_;
};

}  // namespace quillon::fuzz
