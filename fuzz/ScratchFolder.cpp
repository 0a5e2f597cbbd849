#include "fuzz/ScratchFolder.h"

#include <cstdlib>
#include <filesystem>

namespace quillon::fuzz {

ScratchFolder::ScratchFolder() {
    const std::filesystem::path memory = "/dev/shm";
    std::error_code error;
    const auto base =
        std::filesystem::is_directory(memory, error) ? memory : std::filesystem::temp_directory_path(error);
    path_ = (base / "quillon-fuzz-XXXXXX").string();
    if (!::mkdtemp(path_.data())) std::_Exit(EXIT_FAILURE);
}

ScratchFolder::~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

}  // namespace quillon::fuzz
