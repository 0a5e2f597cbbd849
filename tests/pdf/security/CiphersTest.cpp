#include "pdf/security/AesCbc.h"
#include "pdf/security/Hashes.h"
#include "pdf/security/RandomBytes.h"
#include "pdf/security/Rc4.h"
#include "tests/pdf/security/Hex.h"

#include <gtest/gtest.h>

namespace quillon::pdf {
namespace {

// The answers are those of RFC 1321, FIPS 180-4, RFC 6229 and NIST SP 800-38A.

TEST(Hashes, GiveTheKnownAnswers) {
    EXPECT_EQ(md5({"abc"}), fromHex("900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_EQ(sha256({"abc"}), fromHex("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    EXPECT_EQ(sha384({"abc"}), fromHex("cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed"
                                       "8086072ba1e7cc2358baeca134c825a7"));
    EXPECT_EQ(sha512({"abc"}), fromHex("ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
                                       "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f"));
}

TEST(Hashes, TakePiecesAsOne) {
    EXPECT_EQ(md5({"a", "", "bc"}), md5({"abc"}));
    EXPECT_EQ(sha512({"ab", "c"}), sha512({"abc"}));
}

TEST(Rc4Test, GivesTheKnownStream) {
    std::string data(16, '\0');
    Rc4(fromHex("0102030405")).apply(data);
    EXPECT_EQ(data, fromHex("b2396305f03dc027ccc3524a0a1118a8"));
    data.assign(16, '\0');
    Rc4 cipher(fromHex("0102030405060708090a0b0c0d0e0f10"));
    cipher.apply(std::span(data).first(5));
    cipher.apply(std::span(data).subspan(5));
    EXPECT_EQ(data, fromHex("9ac7cc9a609d1ef7b2932899cde41b97"));
}

const std::string vector = fromHex("000102030405060708090a0b0c0d0e0f");
const std::string plain = fromHex("6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51");

struct AesCase {
    const char* key;
    const char* enciphered;
};

class AesCbcTest : public testing::TestWithParam<AesCase> {};
INSTANTIATE_TEST_SUITE_P(KeyLengths, AesCbcTest,
                         testing::Values(AesCase{"2b7e151628aed2a6abf7158809cf4f3c",
                                                 "7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"},
                                         AesCase{"603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4",
                                                 "f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"}));

TEST_P(AesCbcTest, GivesTheKnownAnswersInOneGoOrBlockByBlock) {
    const std::string key = fromHex(GetParam().key);
    std::string data = plain;
    AesCbcEncryptor(key, vector).apply(data);
    EXPECT_EQ(data, fromHex(GetParam().enciphered));
    AesCbcDecryptor decryptor(key, vector);
    decryptor.apply(std::span(data).first(aesBlock));
    decryptor.apply(std::span(data).subspan(aesBlock));
    EXPECT_EQ(data, plain);
}

TEST(RandomBytesTest, AreNotTheSameTwice) {
    EXPECT_EQ(randomBytes(1000).size(), 1000U);
    EXPECT_NE(randomBytes(32), randomBytes(32));
    EXPECT_TRUE(randomBytes(0).empty());
}

}  // namespace
}  // namespace quillon::pdf
