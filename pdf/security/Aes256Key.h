#pragma once

#include "pdf/security/EncryptionDictionary.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

// Revisions 5 and 6 of the standard security handler (ISO 32000-2, 7.6.4.3.3 and 7.6.4.4). `password` is bytes, at most
// 127.

/// The key of the file, nothing when the password is not the right one.
[[nodiscard]] std::optional<std::string> aes256KeyOfUser(const EncryptionDictionary& dictionary,
                                                         std::string_view password);
[[nodiscard]] std::optional<std::string> aes256KeyOfOwner(const EncryptionDictionary& dictionary,
                                                          std::string_view password);

/// Algorithm 2.B, which revision 5 does without all its rounds. `user` is the entry `U` for the owner's password, empty
/// for the user's. 32 bytes.
[[nodiscard]] std::string aes256Hash(int revision, std::string_view password, std::string_view salt,
                                     std::string_view user);

/// An entry that a password is checked with (`U` or `O`, 48 bytes), and the key of the file enciphered by the password
/// (`UE` or `OE`, 32 bytes), for revision 6.
struct Aes256Entry {
    std::string check;
    std::string key;
};
/// Algorithms 8 and 9; `user` as above. The salts are made at random.
[[nodiscard]] Aes256Entry makeAes256Entry(std::string_view password, std::string_view fileKey, std::string_view user);

}  // namespace quillon::pdf
