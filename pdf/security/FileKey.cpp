#include "pdf/security/FileKey.h"

#include "pdf/security/Aes256Key.h"
#include "pdf/security/LegacyKey.h"
#include "pdf/security/PasswordForms.h"

namespace quillon::pdf {

std::optional<FileKey> openWithPassword(const EncryptionDictionary& dictionary, std::string_view utf8Password) {
    if (!dictionary.supported) return std::nullopt;
    const bool legacy = dictionary.version < 5;
    const auto forms = legacy ? legacyPasswordForms(utf8Password) : passwordForms(utf8Password);
    // The owner's password comes first: it gives more, if it should be the user's as well.
    for (const bool isOwner : {true, false}) {
        for (const std::string& form : forms) {
            auto key = legacy ? (isOwner ? legacyKeyOfOwner(dictionary, form) : legacyKeyOfUser(dictionary, form))
                              : (isOwner ? aes256KeyOfOwner(dictionary, form) : aes256KeyOfUser(dictionary, form));
            if (key) return FileKey{std::move(*key), isOwner};
        }
    }
    return std::nullopt;
}

}  // namespace quillon::pdf
