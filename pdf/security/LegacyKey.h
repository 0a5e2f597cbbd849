#pragma once

#include "pdf/security/EncryptionDictionary.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

// Revisions 2 to 4 of the standard security handler (ISO 32000-2, 7.6.4.3.2 and 7.6.4.4). `password` is bytes, of which
// the first 32 count; the results are the key of the file, nothing when the password is not the right one.

[[nodiscard]] std::optional<std::string> legacyKeyOfUser(const EncryptionDictionary& dictionary,
                                                         std::string_view password);
[[nodiscard]] std::optional<std::string> legacyKeyOfOwner(const EncryptionDictionary& dictionary,
                                                          std::string_view password);

}  // namespace quillon::pdf
