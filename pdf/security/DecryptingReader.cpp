#include "pdf/security/DecryptingReader.h"

#include "pdf/security/Padding.h"

#include <algorithm>
#include <span>

namespace quillon::pdf {

namespace {

bool isAes(Cipher cipher) noexcept {
    return cipher == Cipher::Aes128 || cipher == Cipher::Aes256;
}

}  // namespace

DecryptingReader::DecryptingReader(std::shared_ptr<InputFile> file, std::uint64_t offset, std::uint64_t length,
                                   StreamKey key)
    : file_(std::move(file)), offset_(offset), length_(length), key_(std::move(key)), plainLength_(findPlainLength()) {
    rewind();
}

std::uint64_t DecryptingReader::findPlainLength() {
    if (!isAes(key_.cipher)) return length_;
    const bool whole = length_ % aesBlock == 0;
    length_ -= length_ % aesBlock;
    if (length_ < 2 * aesBlock) return 0;
    if (!whole) return length_ - aesBlock;
    std::string end = read(offset_ + length_ - 2 * aesBlock, 2 * aesBlock);
    const std::string vector = end.substr(0, aesBlock);
    end.erase(0, aesBlock);
    AesCbcDecryptor(key_.key, vector).apply(end);
    return length_ - aesBlock - paddingOf(end);
}

void DecryptingReader::rewind() {
    done_ = 0;
    if (key_.cipher == Cipher::Rc4) rc4_.emplace(key_.key);
    if (!isAes(key_.cipher) || plainLength_ == 0) return;
    aes_.emplace(key_.key, read(offset_, aesBlock));
    done_ = aesBlock;
}

std::string DecryptingReader::read(std::uint64_t offset, std::size_t length) {
    std::string bytes(length, '\0');
    shortened_ = file_->readAt(offset, bytes) < length || shortened_;
    return bytes;
}

std::string_view DecryptingReader::next() {
    constexpr std::uint64_t most = 256 * 1024;
    const std::uint64_t vector = aes_ ? aesBlock : 0;
    const std::uint64_t plainDone = done_ - vector;
    if (plainDone >= plainLength_) return {};
    piece_ = read(offset_ + done_, static_cast<std::size_t>(std::min(most, length_ - done_)));
    done_ += piece_.size();
    if (rc4_) rc4_->apply(piece_);
    if (aes_) aes_->apply(piece_);
    return std::string_view(piece_).substr(0, static_cast<std::size_t>(plainLength_ - plainDone));
}

}  // namespace quillon::pdf
