#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <nettle/aes.h>
#include <span>
#include <string_view>
#include <variant>

namespace quillon::pdf {

// AES in cipher block chaining mode, with keys of 16 or 32 bytes. Data comes in whole blocks; padding is not done here.

inline constexpr std::size_t aesBlock = 16;
/// A first block of zeros, where a key and not data is enciphered.
inline constexpr std::string_view zeroVector{"\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", aesBlock};

class AesCbcEncryptor {
public:
    /// `vector` is the initialization vector, 16 bytes.
    AesCbcEncryptor(std::string_view key, std::string_view vector);

    /// Goes on with `blocks`, in place.
    void apply(std::span<char> blocks);

private:
    std::variant<aes128_ctx, aes256_ctx> context_;
    std::array<std::uint8_t, aesBlock> vector_{};
};

class AesCbcDecryptor {
public:
    AesCbcDecryptor(std::string_view key, std::string_view vector);

    /// Goes on with `blocks`, in place.
    void apply(std::span<char> blocks);

private:
    std::variant<aes128_ctx, aes256_ctx> context_;
    std::array<std::uint8_t, aesBlock> vector_{};
};

}  // namespace quillon::pdf
