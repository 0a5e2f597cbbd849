#include "pdf/security/Aes256Key.h"

#include "pdf/security/AesCbc.h"
#include "pdf/security/Hashes.h"
#include "pdf/security/RandomBytes.h"

namespace quillon::pdf {

namespace {

constexpr std::size_t hashLength = 32;
constexpr std::size_t saltLength = 8;

/// One round: enciphers the password, the hash so far and `user`, 64 times over, and hashes the result as that says.
/// Returns the last byte of what was hashed.
unsigned char turn(std::string& hash, std::string_view password, std::string_view user) {
    constexpr int repetitions = 64;
    constexpr std::size_t half = 16;
    std::string block(password);
    block += hash;
    block += user;
    std::string text;
    text.reserve(block.size() * repetitions);
    for (int i = 0; i < repetitions; ++i) text += block;
    AesCbcEncryptor(std::string_view(hash).substr(0, half), std::string_view(hash).substr(half, half)).apply(text);
    // The first 16 bytes as one number, modulo 3; 256 is 1 modulo 3, so the sum of the bytes will do.
    unsigned sum = 0;
    for (std::size_t i = 0; i < half; ++i) sum += static_cast<unsigned char>(text[i]);
    hash = sum % 3 == 0 ? sha256({text}) : sum % 3 == 1 ? sha384({text}) : sha512({text});
    return static_cast<unsigned char>(text.back());
}

std::optional<std::string> keyFrom(const EncryptionDictionary& dictionary, std::string_view password,
                                   std::string_view check, std::string_view key, std::string_view user) {
    const std::string_view salt = check.substr(hashLength, saltLength);
    if (aes256Hash(dictionary.revision, password, salt, user) != check.substr(0, hashLength)) return std::nullopt;
    const std::string_view keySalt = check.substr(hashLength + saltLength, saltLength);
    std::string fileKey(key);
    AesCbcDecryptor(aes256Hash(dictionary.revision, password, keySalt, user), zeroVector).apply(fileKey);
    return fileKey;
}

}  // namespace

std::string aes256Hash(int revision, std::string_view password, std::string_view salt, std::string_view user) {
    std::string hash = sha256({password, salt, user});
    if (revision == 5) return hash;
    constexpr int fewest = 64;
    constexpr int slack = 32;
    for (int round = 1;; ++round) {
        const int last = turn(hash, password, user);
        if (round >= fewest && last <= round - slack) break;
    }
    hash.resize(hashLength);
    return hash;
}

std::optional<std::string> aes256KeyOfUser(const EncryptionDictionary& dictionary, std::string_view password) {
    return keyFrom(dictionary, password, dictionary.user, dictionary.userKey, {});
}

std::optional<std::string> aes256KeyOfOwner(const EncryptionDictionary& dictionary, std::string_view password) {
    return keyFrom(dictionary, password, dictionary.owner, dictionary.ownerKey, dictionary.user);
}

Aes256Entry makeAes256Entry(std::string_view password, std::string_view fileKey, std::string_view user) {
    constexpr int revision = 6;
    const std::string salts = randomBytes(2 * saltLength);
    const std::string_view salt = std::string_view(salts).substr(0, saltLength);
    const std::string_view keySalt = std::string_view(salts).substr(saltLength);
    Aes256Entry entry{aes256Hash(revision, password, salt, user) + salts, std::string(fileKey)};
    AesCbcEncryptor(aes256Hash(revision, password, keySalt, user), zeroVector).apply(entry.key);
    return entry;
}

}  // namespace quillon::pdf
