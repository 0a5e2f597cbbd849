#include "pdf/security/Hashes.h"

#include <cstdint>
#include <nettle/md5.h>
#include <nettle/sha2.h>

namespace quillon::pdf {

namespace {

template <class Context>
std::string digestOf(std::initializer_list<std::string_view> pieces, void (*init)(Context*),
                     void (*update)(Context*, std::size_t, const std::uint8_t*),
                     void (*digest)(Context*, std::size_t, std::uint8_t*), std::size_t size) {
    Context context;
    init(&context);
    for (const std::string_view piece : pieces) {
        update(&context, piece.size(), reinterpret_cast<const std::uint8_t*>(piece.data()));
    }
    std::string result(size, '\0');
    digest(&context, size, reinterpret_cast<std::uint8_t*>(result.data()));
    return result;
}

}  // namespace

std::string md5(std::initializer_list<std::string_view> pieces) {
    return digestOf<md5_ctx>(pieces, md5_init, md5_update, md5_digest, MD5_DIGEST_SIZE);
}

std::string sha256(std::initializer_list<std::string_view> pieces) {
    return digestOf<sha256_ctx>(pieces, sha256_init, sha256_update, sha256_digest, SHA256_DIGEST_SIZE);
}

std::string sha384(std::initializer_list<std::string_view> pieces) {
    // SHA-384 is SHA-512 with other beginnings and less of the result.
    return digestOf<sha512_ctx>(pieces, sha384_init, sha512_update, sha384_digest, SHA384_DIGEST_SIZE);
}

std::string sha512(std::initializer_list<std::string_view> pieces) {
    return digestOf<sha512_ctx>(pieces, sha512_init, sha512_update, sha512_digest, SHA512_DIGEST_SIZE);
}

}  // namespace quillon::pdf
