#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillon::test {

/// A folder of its own below the system's folder for temporary files, removed with all that is in it.
class TempDir {
public:
    TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir();

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
    [[nodiscard]] std::string file(std::string_view name) const;

    /// Writes a file and returns its path.
    std::string write(std::string_view name, std::string_view bytes) const;

private:
    std::filesystem::path path_;
};

}  // namespace quillon::test
