#include "pdf/security/LegacyKey.h"

#include "pdf/security/Hashes.h"
#include "pdf/security/Rc4.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

constexpr std::size_t paddedLength = 32;
constexpr std::string_view padding{
    "\x28\xBF\x4E\x5E\x4E\x75\x8A\x41\x64\x00\x4E\x56\xFF\xFA\x01\x08"
    "\x2E\x2E\x00\xB6\xD0\x68\x3E\x80\x2F\x0C\xA9\xFE\x64\x53\x69\x7A",
    paddedLength};
constexpr int rounds = 50;
constexpr unsigned char lastXor = 19;

std::string padded(std::string_view password) {
    std::string result(password.substr(0, paddedLength));
    result += padding.substr(0, paddedLength - result.size());
    return result;
}

/// RC4 of `data` with `key`, each byte of which is combined with `change`.
void applyChanged(std::string key, unsigned char change, std::string& data) {
    for (char& c : key) c = static_cast<char>(static_cast<unsigned char>(c) ^ change);
    Rc4(key).apply(data);
}

/// Algorithm 2, for a password that is padded already.
std::string fileKey(const EncryptionDictionary& dictionary, std::string_view paddedPassword, std::size_t length) {
    std::string permissions;
    for (unsigned shift = 0; shift < 32; shift += 8) permissions += static_cast<char>(dictionary.permissions >> shift);
    const std::string_view clearMetadata =
        dictionary.revision >= 4 && !dictionary.encryptsMetadata ? "\xFF\xFF\xFF\xFF" : "";
    std::string key = md5({paddedPassword, dictionary.owner, permissions, dictionary.fileId, clearMetadata});
    if (dictionary.revision >= 3) {
        for (int i = 0; i < rounds; ++i) key = md5({std::string_view(key).substr(0, length)});
    }
    key.resize(length);
    return key;
}

/// Algorithms 4 to 6: whether `key` is the one with which `U` was made.
bool fits(const EncryptionDictionary& dictionary, const std::string& key) {
    if (dictionary.revision == 2) {
        std::string expected(padding);
        Rc4(key).apply(expected);
        return expected == dictionary.user;
    }
    std::string expected = md5({padding, dictionary.fileId});
    for (unsigned char i = 0; i <= lastXor; ++i) applyChanged(key, i, expected);
    return dictionary.user.starts_with(expected);
}

std::optional<std::string> fittingKey(const EncryptionDictionary& dictionary, std::string_view paddedPassword,
                                      std::size_t length) {
    std::string key = fileKey(dictionary, paddedPassword, length);
    if (!fits(dictionary, key)) return std::nullopt;
    return key;
}

/// Algorithm 7: the user's password, padded, that the owner's opens. `hashed` is the part of a digest that goes into
/// the next one.
std::string userPassword(const EncryptionDictionary& dictionary, std::string_view ownerPassword, std::size_t length,
                         std::size_t hashed) {
    std::string key = md5({padded(ownerPassword)});
    if (dictionary.revision >= 3) {
        for (int i = 0; i < rounds; ++i) key = md5({std::string_view(key).substr(0, hashed)});
    }
    key.resize(length);
    std::string password = dictionary.owner;
    if (dictionary.revision == 2) {
        Rc4(key).apply(password);
    } else {
        for (int i = lastXor; i >= 0; --i) applyChanged(key, static_cast<unsigned char>(i), password);
    }
    return password;
}

}  // namespace

std::optional<std::string> legacyKeyOfUser(const EncryptionDictionary& dictionary, std::string_view password) {
    for (const std::size_t length : dictionary.keyLengths) {
        if (auto key = fittingKey(dictionary, padded(password), length)) return key;
    }
    return std::nullopt;
}

std::optional<std::string> legacyKeyOfOwner(const EncryptionDictionary& dictionary, std::string_view password) {
    constexpr std::size_t digest = 16;
    for (const std::size_t length : dictionary.keyLengths) {
        // Some programs hash the whole digest again, as the standard says, some as much as the key is long.
        for (const std::size_t hashed : {digest, length}) {
            const std::string user = userPassword(dictionary, password, length, hashed);
            if (auto key = fittingKey(dictionary, user, length)) return key;
        }
    }
    return std::nullopt;
}

}  // namespace quillon::pdf
