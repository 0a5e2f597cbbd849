#include "pdf/security/Decryptor.h"

#include "pdf/security/AesCbc.h"
#include "pdf/security/CryptFilter.h"
#include "pdf/security/Hashes.h"
#include "pdf/security/Padding.h"
#include "pdf/security/Rc4.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

void decipher(Cipher cipher, std::string_view key, std::string& data) {
    if (cipher == Cipher::Rc4) Rc4(key).apply(data);
    if (cipher == Cipher::Identity || cipher == Cipher::Rc4) return;
    if (data.size() < 2 * aesBlock) {
        data.clear();
        return;
    }
    const bool whole = data.size() % aesBlock == 0;
    AesCbcDecryptor decryptor(key, std::string_view(data).substr(0, aesBlock));
    data.erase(0, aesBlock);
    data.resize(data.size() / aesBlock * aesBlock);
    decryptor.apply(data);
    if (whole) data.resize(data.size() - paddingOf(data));
}

}  // namespace

std::string Decryptor::string(Reference object, std::string_view bytes) const {
    std::string text(bytes);
    if (hasStringCipher()) decipher(dictionary_->strings, objectKey(dictionary_->strings, object), text);
    return text;
}

std::optional<StreamKey> Decryptor::streamKey(Reference object, const Dictionary& dictionary) const {
    const auto named = cryptFilterOf(dictionary);
    Cipher cipher = dictionary_->streams;
    if (dictionary["Type"].isName("XRef")) {
        cipher = Cipher::Identity;
    } else if (named && dictionary_->version >= 4) {
        cipher = dictionary_->filter(*named);
    } else if (dictionary["Type"].isName("Metadata") && dictionary_->version >= 4 && !dictionary_->encryptsMetadata) {
        cipher = Cipher::Identity;
    } else if (dictionary["Type"].isName("EmbeddedFile")) {
        cipher = dictionary_->embeddedFiles;
    }
    if (cipher == Cipher::Identity) return StreamKey();
    if (!key_) return std::nullopt;
    return StreamKey{cipher, objectKey(cipher, object)};
}

bool Decryptor::decrypt(Reference object, const Dictionary& dictionary, std::string& data) const {
    const auto key = streamKey(object, dictionary);
    if (key) decryptStream(*key, data);
    return key.has_value();
}

/// Algorithm 1.
std::string Decryptor::objectKey(Cipher cipher, Reference object) const {
    if (cipher == Cipher::Aes256) return *key_;
    constexpr std::size_t longest = 16;
    constexpr std::size_t added = 5;
    std::string place;
    for (unsigned shift = 0; shift < 24; shift += 8) place += static_cast<char>(object.number >> shift);
    for (unsigned shift = 0; shift < 16; shift += 8) place += static_cast<char>(object.generation >> shift);
    std::string key = md5({*key_, place, cipher == Cipher::Aes128 ? "sAlT" : ""});
    // AES knows no key shorter than the digest, whatever the key of the file.
    if (cipher == Cipher::Rc4) key.resize(std::min(key_->size() + added, longest));
    return key;
}

void decryptStream(const StreamKey& key, std::string& data) {
    decipher(key.cipher, key.key, data);
}

}  // namespace quillon::pdf
