#include "pdf/security/RandomBytes.h"

#include <cerrno>
#include <sys/random.h>
#include <system_error>

namespace quillon::pdf {

void fillWithRandom(std::span<char> bytes) {
    while (!bytes.empty()) {
        const ssize_t got = ::getrandom(bytes.data(), bytes.size(), 0);
        if (got > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(got));
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "getrandom");
        }
    }
}

std::string randomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    fillWithRandom(bytes);
    return bytes;
}

}  // namespace quillon::pdf
