#pragma once

#include "pdf/security/EncryptionDictionary.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// What a password has given: the key to the data of the file, and whose password it was.
struct FileKey {
    std::string key;  ///< 5 to 16 bytes, 32 in version 5
    bool isOwner = false;
};

/// Tries `password` in every form that it may have as bytes, as the owner's and as the user's. Nothing when it is
/// neither. Slow on purpose in revision 6, which is there to make guessing slow: some milliseconds.
[[nodiscard]] std::optional<FileKey> openWithPassword(const EncryptionDictionary& dictionary,
                                                      std::string_view utf8Password);

}  // namespace quillon::pdf
