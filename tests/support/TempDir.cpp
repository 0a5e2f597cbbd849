#include "tests/support/TempDir.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace quillon::test {

TempDir::TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "quillon-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
    path_ = name;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::file(std::string_view name) const {
    return (path_ / name).string();
}

std::string TempDir::write(std::string_view name, std::string_view bytes) const {
    const std::string path = file(name);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) throw std::runtime_error("cannot write " + path);
    return path;
}

}  // namespace quillon::test
