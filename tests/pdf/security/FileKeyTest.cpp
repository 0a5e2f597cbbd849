#include "pdf/object/Parser.h"
#include "pdf/security/FileKey.h"
#include "pdf/security/Keyring.h"
#include "tests/pdf/security/Hex.h"

#include <gtest/gtest.h>

namespace quillon::pdf {
namespace {

EncryptionDictionary read(std::string_view text) {
    const Object parsed = Parser(text).parse();
    return EncryptionDictionary::read(*parsed.dictionary(), fromHex("31415926535897932384626433832795"));
}

/// Files that qpdf has protected by the passwords `user` and `owner`, and the keys that it found.
struct KnownFile {
    const char* name;
    const char* dictionary;
    const char* key;
};

constexpr KnownFile knownFiles[] = {{"Revision2",
                                     "<</Filter/Standard/V 1/R 2/Length 40/P -4"
                                     "/O<94e8094419662a774442fb072e3d9f19e9d130ec09a4d0061e78fe920f7ab62f>"
                                     "/U<2aa12f26bcf1a217c0f1ee491745f646671475ae85bddf3e3c1a45a8457391cb>>>",
                                     "ee4fd3a223"},
                                    {"Revision3",
                                     "<</Filter/Standard/V 2/R 3/Length 128/P -4"
                                     "/O<0ba3835f88f90388e74e54584125ce142be0de24c6b0d37746e075b891756671>"
                                     "/U<763f954d16622015ee88b60b3eb8f7590122456a91bae5134273a6db134c87c4>>>",
                                     "55831911f0f2b9a08ac3cbcc766166db"},
                                    {"Revision4",
                                     "<</Filter/Standard/V 4/R 4/Length 128/P -4/EncryptMetadata false"
                                     "/CF<</StdCF<</AuthEvent/DocOpen/CFM/AESV2/Length 16>>>>/StmF/StdCF/StrF/StdCF"
                                     "/O<0ba3835f88f90388e74e54584125ce142be0de24c6b0d37746e075b891756671>"
                                     "/U<fb8f3661d99bba02de37f0c770ae4d2a0122456a91bae5134273a6db134c87c4>>>",
                                     "ca7f4da6a3bdc51a30f25e233d3cb9fc"},
                                    {"Revision5",
                                     "<</Filter/Standard/V 5/R 5/Length 256/P -4"
                                     "/CF<</StdCF<</AuthEvent/DocOpen/CFM/AESV3/Length 32>>>>/StmF/StdCF/StrF/StdCF"
                                     "/O<91b078b3a8c7f25c4b850405aa1b124a652002444abdfeeb24f8e8f837e0bae7"
                                     "6dae6ab74e443e3229b42a1b61e5a0ac>"
                                     "/OE<8521df2e004010ed15a7cf7497df88018f541d8975e06172f42a3af79ce8fb54>"
                                     "/U<dd35828abd82584bc74d975e2cded04d58b13e04dbf65fd9a6178597cf0bb377"
                                     "b45eb58ba540d5dfe68317c363cb7b49>"
                                     "/UE<306e8766cafc7894b919ccf41596d97d7a329887c2e9bedae08b9f390d85345b>>>",
                                     "98db8a77546e1fa570f023cdb812bfc7d43c4770f9da8083b4ca82181c76238d"},
                                    {"Revision6",
                                     "<</Filter/Standard/V 5/R 6/Length 256/P -4"
                                     "/CF<</StdCF<</AuthEvent/DocOpen/CFM/AESV3/Length 32>>>>/StmF/StdCF/StrF/StdCF"
                                     "/O<8204bcfd83e764573f2fa5588063bccf0257d0c9acde99ecb5e2f9dfdf3840c7"
                                     "2035ae11308ab9cbb2475cba6323f3ba>"
                                     "/OE<ceee36deebee5664bc615f2056819a8957da770400e0381aed1c56df71a39ce2>"
                                     "/U<0004c15e55925eeea70bbc0364913291915f40f204de02682fd3b2d15960a374"
                                     "330916efc866d3f02fbed0da4539f9bb>"
                                     "/UE<8a0d5fd6175d5dd16f3adc94d48bfa707fedd150763246bd92d5429d1f71d032>>>",
                                     "5028698898d5ae12c527f933060809587ef54ab2a68e1ece6621b60a322da3ea"}};

class FileKeyTest : public testing::TestWithParam<KnownFile> {};
INSTANTIATE_TEST_SUITE_P(EachRevision, FileKeyTest, testing::ValuesIn(knownFiles),
                         [](const auto& file) { return std::string(file.param.name); });

TEST_P(FileKeyTest, EitherPasswordGivesTheKey) {
    const EncryptionDictionary dictionary = read(GetParam().dictionary);
    ASSERT_TRUE(dictionary.supported);
    const auto user = openWithPassword(dictionary, "user");
    ASSERT_TRUE(user);
    EXPECT_EQ(user->key, fromHex(GetParam().key));
    EXPECT_FALSE(user->isOwner);
    const auto owner = openWithPassword(dictionary, "owner");
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner->key, fromHex(GetParam().key));
    EXPECT_TRUE(owner->isOwner);
}

TEST_P(FileKeyTest, NoOtherPasswordDoes) {
    const EncryptionDictionary dictionary = read(GetParam().dictionary);
    for (const char* wrong : {"", "User", "user ", "owne", "пароль"}) {
        EXPECT_FALSE(openWithPassword(dictionary, wrong)) << wrong;
    }
}

TEST_P(FileKeyTest, AKeyringRemembersWhatAPasswordGives) {
    Keyring keys;
    EXPECT_FALSE(keys.isKnown());
    keys.learn(read(GetParam().dictionary));
    ASSERT_TRUE(keys.isKnown());
    EXPECT_TRUE(keys.decryptor()->isLocked());
    EXPECT_EQ(keys.open("wrong"), Access::None);
    EXPECT_TRUE(keys.decryptor()->isLocked());
    EXPECT_EQ(keys.open("user"), Access::User);
    const auto decryptor = keys.decryptor();
    EXPECT_FALSE(decryptor->isLocked());
    for (int i = 0; i < 30'000; ++i) ASSERT_EQ(keys.open("user"), Access::User);  // minutes, if derived each time
    EXPECT_EQ(keys.open("owner"), Access::Owner);
    EXPECT_EQ(keys.open("wrong"), Access::None);
    EXPECT_EQ(keys.decryptor(), decryptor);
}

TEST(FileKey, AKeyringForgetsPasswordsBeyondTheMost) {
    Keyring keys;
    keys.learn(read(knownFiles[0].dictionary));
    for (int i = 0; i < 100; ++i) EXPECT_EQ(keys.open(std::to_string(i)), Access::None);
    EXPECT_EQ(keys.open("user"), Access::User);
}

}  // namespace
}  // namespace quillon::pdf
