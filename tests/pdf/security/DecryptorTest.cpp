#include "pdf/object/Parser.h"
#include "pdf/security/DecryptingReader.h"
#include "pdf/security/Decryptor.h"
#include "pdf/security/Encryptor.h"
#include "tests/pdf/security/Hex.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace quillon::pdf {
namespace {

Decryptor decryptorFor(Cipher cipher, int version, std::optional<std::string> key) {
    auto dictionary = std::make_shared<EncryptionDictionary>();
    dictionary->version = version;
    dictionary->strings = dictionary->streams = dictionary->embeddedFiles = cipher;
    dictionary->filters = {{"Other", Cipher::Rc4}};
    dictionary->encryptsMetadata = false;
    return {dictionary, std::move(key)};
}

Dictionary parsed(std::string_view text) {
    return *Parser(text).parse().dictionary();
}

std::string sealed(std::string_view key, std::string_view plain) {
    const std::size_t padding = aesBlock - plain.size() % aesBlock;
    std::string blocks(plain);
    blocks.append(padding, static_cast<char>(padding));
    const std::string vector = "0123456789abcdef";
    AesCbcEncryptor(key, vector).apply(blocks);
    return vector + blocks;
}

TEST(DecryptorTest, EveryObjectHasItsOwnKeyInOldFiles) {
    const Decryptor decryptor = decryptorFor(Cipher::Rc4, 2, fromHex("0102030405"));
    const std::string twice = decryptor.string({7, 1}, decryptor.string({7, 1}, "text"));
    EXPECT_EQ(twice, "text");
    EXPECT_NE(decryptor.string({7, 1}, "text"), decryptor.string({7, 0}, "text"));
    EXPECT_NE(decryptor.string({7, 1}, "text"), decryptor.string({8, 1}, "text"));
    EXPECT_EQ(decryptor.streamKey({1, 0}, {})->key.size(), 10U);
}

TEST(DecryptorTest, TheKeyOfTheFileServesAllObjectsOfNewOnes) {
    const std::string key(32, 'k');
    const Decryptor decryptor = decryptorFor(Cipher::Aes256, 5, key);
    EXPECT_EQ(decryptor.string({7, 1}, sealed(key, "text")), "text");
    EXPECT_EQ(decryptor.streamKey({9, 0}, {})->key, key);
}

TEST(DecryptorTest, WhatIsTooShortForAStartAndABlockIsEmpty) {
    const Decryptor decryptor = decryptorFor(Cipher::Aes256, 5, std::string(32, 'k'));
    EXPECT_EQ(decryptor.string({1, 0}, ""), "");
    EXPECT_EQ(decryptor.string({1, 0}, "short"), "");
    EXPECT_EQ(decryptor.string({1, 0}, std::string(31, 'x')), "");
}

TEST(DecryptorTest, DataCutOffGivesItsWholeBlocks) {
    const std::string key(32, 'k');
    const std::string plain(100, 'p');
    std::string data = sealed(key, plain);
    data.resize(16 + 48 + 5);
    decryptStream({Cipher::Aes256, key}, data);
    EXPECT_EQ(data, std::string(48, 'p'));
}

TEST(DecryptorTest, WrongPaddingIsTakenForData) {
    const std::string key(32, 'k');
    const std::string vector(16, 'v');
    std::string blocks = std::string(15, 'p') + '\x02';
    AesCbcEncryptor(key, vector).apply(blocks);
    std::string data = vector + blocks;
    decryptStream({Cipher::Aes256, key}, data);
    EXPECT_EQ(data, std::string(15, 'p') + '\x02');
}

TEST(DecryptorTest, TheDictionaryOfAStreamMaySayOtherwise) {
    const Decryptor decryptor = decryptorFor(Cipher::Aes128, 4, std::string(16, 'k'));
    const auto cipher = [&](std::string_view text) { return decryptor.streamKey({1, 0}, parsed(text))->cipher; };
    EXPECT_EQ(cipher("<<>>"), Cipher::Aes128);
    EXPECT_EQ(cipher("<</Type/XRef>>"), Cipher::Identity);
    EXPECT_EQ(cipher("<</Type/Metadata>>"), Cipher::Identity);
    EXPECT_EQ(cipher("<</Filter[/Crypt]/DecodeParms[<</Name/Other>>]>>"), Cipher::Rc4);
    EXPECT_EQ(cipher("<</Type/Metadata/Filter[/Crypt]/DecodeParms[<</Name/Other>>]>>"), Cipher::Rc4);
    EXPECT_EQ(cipher("<</Filter/Crypt>>"), Cipher::Identity);
}

TEST(DecryptorTest, WithoutTheKeyOnlyClearStreamsCanBeRead) {
    const Decryptor decryptor = decryptorFor(Cipher::Aes128, 4, std::nullopt);
    EXPECT_TRUE(decryptor.isLocked());
    EXPECT_FALSE(decryptor.streamKey({1, 0}, {}));
    EXPECT_TRUE(decryptor.streamKey({1, 0}, parsed("<</Type/Metadata>>")));
    EXPECT_EQ(decryptor.string({1, 0}, "as it is"), "as it is");
    std::string data = "data";
    EXPECT_FALSE(decryptor.decrypt({1, 0}, {}, data));
    EXPECT_EQ(data, "data");
}

/// Reads a file with the data at an odd place, piece by piece.
class DecryptingReaderTest : public testing::Test {
protected:
    static constexpr std::uint64_t offset = 7;

    DecryptingReader reader(const std::string& data, StreamKey key) const {
        return {InputFile::open(dir.write("data", std::string(offset, '#') + data)), offset, data.size(),
                std::move(key)};
    }
    static std::string all(DecryptingReader& reader) {
        std::string whole;
        for (auto piece = reader.next(); !piece.empty(); piece = reader.next()) whole += piece;
        return whole;
    }
    static std::string noise(std::size_t length) {
        std::string text(length, '\0');
        for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(i * i / 7);
        return text;
    }

    const test::TempDir dir;
};

TEST_F(DecryptingReaderTest, GivesWhatDecipheringAtOnceGives) {
    for (const StreamKey& key : {StreamKey{Cipher::Rc4, "12345"}, StreamKey{Cipher::Aes128, std::string(16, 'k')},
                                 StreamKey{Cipher::Aes256, std::string(32, 'k')}}) {
        for (const std::size_t length :
             {0U, 1U, 16U, 31U, 32U, 33U, 47U, 48U, 100'000U, 262'144U, 600'000U, 600'001U}) {
            const std::string plain = noise(length);
            std::string data = key.cipher == Cipher::Rc4 ? plain : sealed(key.key, plain);
            for (int cut = 0; cut < 2 && data.size() > 5; ++cut) {
                DecryptingReader pieces = reader(data, key);
                std::string expected = data;
                decryptStream(key, expected);
                EXPECT_EQ(pieces.length(), expected.size()) << length;
                EXPECT_EQ(all(pieces), expected) << length;
                pieces.rewind();
                EXPECT_EQ(all(pieces), expected) << length;
                EXPECT_FALSE(pieces.hasShortened());
                data.resize(data.size() - 5);
            }
        }
    }
}

TEST_F(DecryptingReaderTest, AFileCutShortGivesTheLengthThatWasSaid) {
    const StreamKey key{Cipher::Aes256, std::string(32, 'k')};
    DecryptingReader pieces = reader(sealed(key.key, noise(600'000)), key);
    std::filesystem::resize_file(dir.file("data"), 300'000);
    EXPECT_EQ(all(pieces).size(), 600'000U);
    EXPECT_TRUE(pieces.hasShortened());
}

}  // namespace
}  // namespace quillon::pdf
