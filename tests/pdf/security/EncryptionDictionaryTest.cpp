#include "pdf/object/Parser.h"
#include "pdf/security/EncryptionDictionary.h"

#include <gtest/gtest.h>

namespace quillon::pdf {
namespace {

constexpr std::string_view keys = "/O(o)/U(u)";

EncryptionDictionary read(const std::string& entries) {
    const Object parsed = Parser("<<" + entries + ">>").parse();
    return EncryptionDictionary::read(*parsed.dictionary(), "id");
}

EncryptionDictionary standard(const std::string& entries) {
    return read("/Filter/Standard" + std::string(keys) + entries);
}

using Lengths = std::vector<std::size_t>;

TEST(EncryptionDictionaryTest, TheStatedLengthOfTheKeyIsTriedFirst) {
    EXPECT_EQ(standard("/V 2/R 3/Length 128").keyLengths, (Lengths{16, 5}));
    EXPECT_EQ(standard("/V 2/R 3/Length 64").keyLengths, (Lengths{8, 16, 5}));
}

TEST(EncryptionDictionaryTest, ALengthThatIsMissingOrWrongOrInBytesIsMadeGood) {
    EXPECT_EQ(standard("/V 2/R 3").keyLengths, (Lengths{5, 16}));
    EXPECT_EQ(standard("/V 2/R 3/Length 16").keyLengths, (Lengths{16, 5}));
    EXPECT_EQ(standard("/V 2/R 3/Length -7").keyLengths, (Lengths{16, 5}));
    EXPECT_EQ(standard("/V 2/R 3/Length 9000000000000000000").keyLengths, (Lengths{16, 5}));
    EXPECT_EQ(standard("/V 2/R 3/Length/x").keyLengths, (Lengths{5, 16}));
    EXPECT_EQ(standard("/V 1/R 2/Length 128").keyLengths, (Lengths{5, 16}));
    EXPECT_EQ(standard("/V 4/R 4/Length 40").keyLengths, (Lengths{16, 5}));
}

TEST(EncryptionDictionaryTest, PermissionsAre32BitsOfEitherSign) {
    EXPECT_EQ(standard("/V 1/R 2/P -4").permissions, 0xFFFFFFFCU);
    EXPECT_EQ(standard("/V 1/R 2/P 4294967292").permissions, 0xFFFFFFFCU);
    EXPECT_EQ(standard("/V 1/R 2").permissions, 0U);
}

TEST(EncryptionDictionaryTest, StringsOfAWrongLengthAreCutOrFilled) {
    const auto dictionary =
        read("/Filter/Standard/V 2/R 3/O(" + std::string(40, 'o') + ")/U(" + std::string(31, 'u') + ")");
    ASSERT_TRUE(dictionary.supported);
    EXPECT_EQ(dictionary.owner, std::string(32, 'o'));
    EXPECT_EQ(dictionary.user, std::string(31, 'u') + '\0');
}

TEST(EncryptionDictionaryTest, NothingCanBeDoneWithoutWhatAPasswordIsCheckedWith) {
    EXPECT_FALSE(read("/Filter/Standard/V 2/R 3").supported);
    EXPECT_FALSE(read("/Filter/Standard/V 2/R 3/O 5/U/x").supported);
    const std::string start =
        "/Filter/Standard/V 5/R 6/O(" + std::string(48, 'o') + ")/U(" + std::string(48, 'u') + ")";
    const std::string whole = "(" + std::string(32, 'k') + ")";
    EXPECT_TRUE(read(start + "/OE" + whole + "/UE" + whole).supported);
    EXPECT_FALSE(read(start + "/OE" + whole + "/UE(short)").supported);
    EXPECT_FALSE(read(start).supported);
}

TEST(EncryptionDictionaryTest, OtherHandlersAndVersionsAreNotSupported) {
    const std::string rest = std::string(keys) + "/V 2/R 3";
    EXPECT_TRUE(read("/Filter/Standard" + rest).supported);
    EXPECT_FALSE(read("/Filter/Adobe.PubSec/SubFilter/adbe.pkcs7.s4" + rest).supported);
    EXPECT_FALSE(read(rest).supported);
    for (const char* version :
         {"/V 0/R 3", "/V 3/R 3", "/V 6/R 7", "/V 2/R 1", "/V 2/R 6", "/V 5/R 4", "/V/x/R/y", ""}) {
        EXPECT_FALSE(standard(version).supported) << version;
    }
}

TEST(EncryptionDictionaryTest, CryptFiltersSayTheCiphers) {
    const std::string filters =
        "/V 4/R 4/CF<</A<</CFM/AESV2>>/B<</CFM/V2/Length 16>>/C<</CFM/None>>/D<</CFM/Future>>>>";
    const auto dictionary = standard(filters + "/StmF/A/StrF/B/EFF/C");
    ASSERT_TRUE(dictionary.supported);
    EXPECT_EQ(dictionary.streams, Cipher::Aes128);
    EXPECT_EQ(dictionary.strings, Cipher::Rc4);
    EXPECT_EQ(dictionary.embeddedFiles, Cipher::Identity);
    EXPECT_EQ(dictionary.filter("B"), Cipher::Rc4);
    EXPECT_EQ(dictionary.filter("Identity"), Cipher::Identity);
    EXPECT_EQ(dictionary.filter("Unheard"), Cipher::Aes128);
    EXPECT_EQ(standard(filters + "/StmF/B").strings, Cipher::Identity);
    EXPECT_EQ(standard(filters + "/StmF/B").embeddedFiles, Cipher::Rc4);
    EXPECT_EQ(standard(filters + "/StmF/Identity").streams, Cipher::Identity);
    EXPECT_FALSE(standard(filters + "/StmF/D").supported);
    EXPECT_FALSE(standard(filters + "/StrF/Missing").supported);
    EXPECT_FALSE(standard("/V 4/R 4/CF 5/StmF/A").supported);
}

TEST(EncryptionDictionaryTest, WithoutCryptFiltersAllIsRc4) {
    const auto dictionary = standard("/V 2/R 3/StmF/Identity");
    EXPECT_EQ(dictionary.streams, Cipher::Rc4);
    EXPECT_EQ(dictionary.strings, Cipher::Rc4);
    EXPECT_TRUE(dictionary.encryptsMetadata);
    EXPECT_EQ(dictionary.fileId, "id");
}

}  // namespace
}  // namespace quillon::pdf
