#pragma once

#include "pdf/security/AesCbc.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// How a document to be written is protected. Passwords are UTF-8.
struct Protection {
    std::string userPassword;   ///< empty: the document opens without one
    std::string ownerPassword;  ///< gives all rights; empty: the user's password does
    bool allowsCopying = true;
    bool allowsPrinting = true;
};

/// Protects one document by the standard security handler, revision 6: AES with 256 bits (ISO 32000-2, 7.6.4). The key
/// is made at random. Immutable, so any thread may use it.
///
/// Changing the document, filling in its forms, commenting and extracting text for people who cannot see are always
/// allowed: nobody asked for their restriction, and the last may not be restricted since PDF 2.0.
class Encryptor {
public:
    explicit Encryptor(const Protection& protection);

    /// The encryption dictionary, which itself stands in the file in clear text.
    [[nodiscard]] const std::string& dictionary() const noexcept { return dictionary_; }

    /// `value`, the text of a value or the entries of a dictionary, with its strings enciphered: for what stands
    /// directly in the file.
    [[nodiscard]] std::string withStrings(std::string_view value) const;

    /// Bytes that enciphered data takes: a block in front, and padding behind.
    [[nodiscard]] static constexpr std::uint64_t lengthOf(std::uint64_t plain) noexcept {
        return aesBlock + (plain / aesBlock + 1) * aesBlock;
    }
    /// Enciphers in place. `room` has lengthOf(length) bytes, the data itself stands behind the first block.
    void seal(std::span<char> room, std::size_t length) const;

    /// Enciphers data that comes in pieces.
    class Stream {
    public:
        explicit Stream(const Encryptor& encryptor);
        /// What goes to the file for `piece`.
        [[nodiscard]] std::string_view next(std::string_view piece);
        [[nodiscard]] std::string_view finish();

    private:
        std::string vector_;
        AesCbcEncryptor cipher_;
        std::string waiting_;  // less than a block
        std::string sealed_;
    };

private:
    std::string key_;
    std::string dictionary_;
};

}  // namespace quillon::pdf
