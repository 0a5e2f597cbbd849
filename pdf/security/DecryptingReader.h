#pragma once

#include "pdf/io/InputFile.h"
#include "pdf/security/AesCbc.h"
#include "pdf/security/Decryptor.h"
#include "pdf/security/Rc4.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Reads the enciphered data of a stream out of its file piece by piece, deciphered. For data too large to be held in
/// memory; otherwise there is decryptStream.
class DecryptingReader {
public:
    /// The stream has `length` bytes from `offset` of `file`.
    DecryptingReader(std::shared_ptr<InputFile> file, std::uint64_t offset, std::uint64_t length, StreamKey key);

    /// Bytes of the deciphered data. Known at once, since it stands before the data in a PDF.
    [[nodiscard]] std::uint64_t length() const noexcept { return plainLength_; }

    /// The next piece; empty at the end. Where the file has become shorter, what is missing is deciphered from zeros.
    [[nodiscard]] std::string_view next();
    /// Begins anew.
    void rewind();

    [[nodiscard]] const std::shared_ptr<InputFile>& file() const noexcept { return file_; }
    /// Whether the file turned out to be shorter.
    [[nodiscard]] bool hasShortened() const noexcept { return shortened_; }

private:
    [[nodiscard]] std::string read(std::uint64_t offset, std::size_t length);
    [[nodiscard]] std::uint64_t findPlainLength();

    std::shared_ptr<InputFile> file_;
    std::uint64_t offset_;
    std::uint64_t length_;  // for AES, of whole blocks
    StreamKey key_;
    bool shortened_ = false;  // set when the plain length is found
    std::uint64_t plainLength_;
    std::uint64_t done_ = 0;  // enciphered bytes
    std::string piece_;
    std::optional<Rc4> rc4_;
    std::optional<AesCbcDecryptor> aes_;
};

}  // namespace quillon::pdf
