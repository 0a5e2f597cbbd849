#pragma once

#include "pdf/object/Object.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quillon::pdf {

/// How strings or the data of streams are enciphered (ISO 32000-2, 7.6.5).
enum class Cipher : std::uint8_t {
    Identity,  ///< not at all
    Rc4,       ///< with a key for each object
    Aes128,    ///< likewise
    Aes256     ///< with the key of the file
};

/// What the encryption dictionary of a file (ISO 32000-2, 7.6.2 and 7.6.4.2) says about its protection.
struct EncryptionDictionary {
    /// False where the dictionary is that of another handler than the standard one, of a version that is not known, or
    /// so damaged that no password can be checked: then none opens the file.
    bool supported = false;
    int version = 0;                      ///< `V`: 1, 2, 4 or 5
    int revision = 0;                     ///< `R`: 2 to 6
    std::vector<std::size_t> keyLengths;  ///< that the key may have, in bytes, the most likely first; up to version 4
    std::string owner;                    ///< `O`: 32 bytes, 48 in version 5
    std::string user;                     ///< `U`: likewise
    std::string ownerKey;                 ///< `OE`: 32 bytes, in version 5
    std::string userKey;                  ///< `UE`: likewise
    std::uint32_t permissions = 0;        ///< `P`
    bool encryptsMetadata = true;         ///< `EncryptMetadata`
    Cipher strings = Cipher::Identity;    ///< `StrF`
    Cipher streams = Cipher::Identity;    ///< `StmF`
    Cipher embeddedFiles = Cipher::Identity;              ///< `EFF`
    std::vector<std::pair<std::string, Cipher>> filters;  ///< crypt filters by their names, for streams that name one
    std::string fileId;                                   ///< the first string of the file's `ID`

    /// Reads `dictionary`, in which no reference is left. Real files are not all as they should be: lengths in bytes
    /// instead of bits or missing, strings too long or too short and numbers of the wrong sign are tolerated.
    [[nodiscard]] static EncryptionDictionary read(const Dictionary& dictionary, std::string fileId);

    /// The cipher of the crypt filter `name`; that of other streams when there is none of that name.
    [[nodiscard]] Cipher filter(std::string_view name) const noexcept;
};

}  // namespace quillon::pdf
