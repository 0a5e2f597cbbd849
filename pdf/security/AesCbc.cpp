#include "pdf/security/AesCbc.h"

#include <algorithm>
#include <nettle/cbc.h>
#include <nettle/nettle-meta.h>

namespace quillon::pdf {

namespace {

constexpr std::size_t longKey = 32;

const std::uint8_t* bytesOf(std::string_view text) noexcept {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

}  // namespace

AesCbcEncryptor::AesCbcEncryptor(std::string_view key, std::string_view vector) {
    if (key.size() == longKey) {
        aes256_set_encrypt_key(&context_.emplace<aes256_ctx>(), bytesOf(key));
    } else {
        aes128_set_encrypt_key(&context_.emplace<aes128_ctx>(), bytesOf(key));
    }
    std::copy_n(bytesOf(vector), aesBlock, vector_.begin());
}

void AesCbcEncryptor::apply(std::span<char> blocks) {
    auto* const bytes = reinterpret_cast<std::uint8_t*>(blocks.data());
    if (const auto* context = std::get_if<aes256_ctx>(&context_)) {
        cbc_aes256_encrypt(context, vector_.data(), blocks.size(), bytes, bytes);
    } else {
        cbc_aes128_encrypt(&std::get<aes128_ctx>(context_), vector_.data(), blocks.size(), bytes, bytes);
    }
}

AesCbcDecryptor::AesCbcDecryptor(std::string_view key, std::string_view vector) {
    if (key.size() == longKey) {
        aes256_set_decrypt_key(&context_.emplace<aes256_ctx>(), bytesOf(key));
    } else {
        aes128_set_decrypt_key(&context_.emplace<aes128_ctx>(), bytesOf(key));
    }
    std::copy_n(bytesOf(vector), aesBlock, vector_.begin());
}

void AesCbcDecryptor::apply(std::span<char> blocks) {
    auto* const bytes = reinterpret_cast<std::uint8_t*>(blocks.data());
    if (const auto* context = std::get_if<aes256_ctx>(&context_)) {
        cbc_decrypt(context, nettle_aes256.decrypt, aesBlock, vector_.data(), blocks.size(), bytes, bytes);
    } else {
        cbc_decrypt(&std::get<aes128_ctx>(context_), nettle_aes128.decrypt, aesBlock, vector_.data(), blocks.size(),
                    bytes, bytes);
    }
}

}  // namespace quillon::pdf
