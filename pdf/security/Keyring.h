#pragma once

#include "pdf/security/Decryptor.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon::pdf {

/// What a password opens.
enum class Access : std::uint8_t {
    None,  ///< nothing, it is wrong
    User,  ///< the document, as far as its permissions go
    Owner  ///< everything
};

/// What is known of the key to one file, and what the passwords that were tried have given: finding that out takes
/// milliseconds each, and a merge may open a file hundreds of times. Small for a file without protection, since there
/// may be thousands. Not thread-safe.
class Keyring {
public:
    [[nodiscard]] bool isKnown() const noexcept { return known_ != nullptr; }
    /// Takes over how the file is protected, and tries the empty password.
    void learn(EncryptionDictionary dictionary);

    /// Once a password has opened the file, its data can be deciphered, also for those who know no password. To be
    /// called after `learn`.
    [[nodiscard]] Access open(std::string_view utf8Password);

    /// To be called after `learn`.
    [[nodiscard]] const std::shared_ptr<const Decryptor>& decryptor() const noexcept { return known_->decryptor; }

private:
    struct Known {
        std::shared_ptr<const Decryptor> decryptor;
        std::unordered_map<std::string, Access> tried;
    };

    // Passwords remembered; more than anyone has for one file.
    static constexpr std::size_t most = 16;

    std::unique_ptr<Known> known_;  // null before learn()
};

}  // namespace quillon::pdf
