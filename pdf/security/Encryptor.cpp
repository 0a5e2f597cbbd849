#include "pdf/security/Encryptor.h"

#include "pdf/object/Object.h"
#include "pdf/security/Aes256Key.h"
#include "pdf/security/PasswordForms.h"
#include "pdf/security/RandomBytes.h"
#include "pdf/security/StringRewriter.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

// Bits of the permissions (ISO 32000-2, table 22), counted there from 1.
constexpr std::uint32_t printing = 1U << 2U;
constexpr std::uint32_t copying = 1U << 4U;
constexpr std::uint32_t finePrinting = 1U << 11U;
constexpr std::uint32_t everything = 0xFFFFFFFCU;

std::uint32_t permissionsOf(const Protection& protection) {
    std::uint32_t permissions = everything;
    if (!protection.allowsPrinting) permissions &= ~(printing | finePrinting);
    if (!protection.allowsCopying) permissions &= ~copying;
    return permissions;
}

/// Algorithm 10: the permissions once more, enciphered, so that a change is noticed.
std::string sealedPermissions(std::uint32_t permissions, std::string_view key) {
    std::string block;
    for (unsigned shift = 0; shift < 32; shift += 8) block += static_cast<char>(permissions >> shift);
    block += "\xFF\xFF\xFF\xFFTadb";
    block += randomBytes(aesBlock - block.size());
    AesCbcEncryptor(key, zeroVector).apply(block);
    return block;
}

void appendPadding(std::span<char> room) {
    std::ranges::fill(room, static_cast<char>(room.size()));
}

}  // namespace

Encryptor::Encryptor(const Protection& protection) : key_(randomBytes(32)) {
    const std::string& owner = protection.ownerPassword.empty() ? protection.userPassword : protection.ownerPassword;
    const Aes256Entry user = makeAes256Entry(passwordForms(protection.userPassword).front(), key_, {});
    const Aes256Entry owners = makeAes256Entry(passwordForms(owner).front(), key_, user.check);
    const std::uint32_t permissions = permissionsOf(protection);
    dictionary_ =
        "<</Filter/Standard/V 5/R 6/Length 256/CF<</StdCF<</CFM/AESV3/AuthEvent/DocOpen/Length 32>>>>"
        "/StmF/StdCF/StrF/StdCF/P " +
        std::to_string(static_cast<std::int32_t>(permissions));
    const auto add = [this](std::string_view name, std::string_view value) {
        writeName(dictionary_, name);
        writeString(dictionary_, value);
    };
    add("U", user.check);
    add("UE", user.key);
    add("O", owners.check);
    add("OE", owners.key);
    add("Perms", sealedPermissions(permissions, key_));
    dictionary_ += ">>";
}

std::string Encryptor::withStrings(std::string_view value) const {
    std::string out;
    const auto sealed = [this](std::string_view bytes) {
        std::string room(static_cast<std::size_t>(lengthOf(bytes.size())), '\0');
        std::ranges::copy(bytes, room.begin() + aesBlock);
        seal(room, bytes.size());
        return room;
    };
    rewriteStrings(value, sealed, out);
    return out;
}

void Encryptor::seal(std::span<char> room, std::size_t length) const {
    fillWithRandom(room.first(aesBlock));
    appendPadding(room.subspan(aesBlock + length));
    AesCbcEncryptor(key_, std::string_view(room.data(), aesBlock)).apply(room.subspan(aesBlock));
}

Encryptor::Stream::Stream(const Encryptor& encryptor)
    : vector_(randomBytes(aesBlock)), cipher_(encryptor.key_, vector_) {}

std::string_view Encryptor::Stream::next(std::string_view piece) {
    sealed_.swap(waiting_);
    sealed_ += piece;
    waiting_ = sealed_.substr(sealed_.size() / aesBlock * aesBlock);
    sealed_.resize(sealed_.size() - waiting_.size());
    cipher_.apply(sealed_);
    sealed_.insert(0, vector_);
    vector_.clear();  // only in front of the first piece
    return sealed_;
}

std::string_view Encryptor::Stream::finish() {
    const std::string padding(aesBlock - waiting_.size() % aesBlock, static_cast<char>(aesBlock - waiting_.size()));
    return next(padding);
}

}  // namespace quillon::pdf
