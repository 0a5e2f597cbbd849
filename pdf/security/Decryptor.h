#pragma once

#include "pdf/object/Object.h"
#include "pdf/security/EncryptionDictionary.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// How the data of one stream is deciphered.
struct StreamKey {
    Cipher cipher = Cipher::Identity;
    std::string key;  ///< empty for Identity
};

/// Deciphers the strings and streams of one file (ISO 32000-2, 7.6.3). Immutable, so any thread may use it.
class Decryptor {
public:
    /// `key` is the key of the file; nothing while nobody has opened it: then only what is not enciphered can be read.
    Decryptor(std::shared_ptr<const EncryptionDictionary> dictionary, std::optional<std::string> key)
        : dictionary_(std::move(dictionary)), key_(std::move(key)) {}

    [[nodiscard]] const std::shared_ptr<const EncryptionDictionary>& dictionary() const noexcept { return dictionary_; }
    [[nodiscard]] bool isLocked() const noexcept { return !key_; }
    [[nodiscard]] bool hasStringCipher() const noexcept { return key_ && dictionary_->strings != Cipher::Identity; }

    /// A string of the object `object`, which stands directly in the file and not in an object stream. Without the key
    /// it comes back as it is.
    [[nodiscard]] std::string string(Reference object, std::string_view bytes) const;

    /// For the stream `object` with `dictionary`, whose `Type`, `Filter` and `DecodeParms` must not be references.
    /// Nothing when the key is missing.
    [[nodiscard]] std::optional<StreamKey> streamKey(Reference object, const Dictionary& dictionary) const;
    /// Replaces the whole `data` of that stream by what it is deciphered. False when the key is missing.
    [[nodiscard]] bool decrypt(Reference object, const Dictionary& dictionary, std::string& data) const;

private:
    [[nodiscard]] std::string objectKey(Cipher cipher, Reference object) const;

    std::shared_ptr<const EncryptionDictionary> dictionary_;
    std::optional<std::string> key_;
};

/// Replaces the whole `data` of a stream by what it is deciphered. Data that is cut off gives what is there.
void decryptStream(const StreamKey& key, std::string& data);

}  // namespace quillon::pdf
