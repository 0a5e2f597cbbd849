#include "pdf/object/Parser.h"
#include "pdf/security/Decryptor.h"
#include "pdf/security/Encryptor.h"
#include "pdf/security/FileKey.h"

#include <gtest/gtest.h>

namespace quillon::pdf {
namespace {

EncryptionDictionary dictionaryOf(const Encryptor& encryptor) {
    return EncryptionDictionary::read(*Parser(encryptor.dictionary()).parse().dictionary(), {});
}

std::string opened(const Encryptor& encryptor, std::string data, std::string_view password = "u") {
    const auto key = openWithPassword(dictionaryOf(encryptor), password);
    decryptStream({Cipher::Aes256, key.value().key}, data);
    return data;
}

std::string seal(const Encryptor& encryptor, std::string_view text) {
    std::string room(aesBlock, '\0');
    room += text;
    room.resize(static_cast<std::size_t>(Encryptor::lengthOf(text.size())));
    encryptor.seal(room, text.size());
    return room;
}

TEST(EncryptorTest, WhatIsSealedOpensWithEitherPassword) {
    const Encryptor encryptor({"u", "o"});
    for (const std::size_t length : {0U, 1U, 15U, 16U, 17U, 1000U}) {
        const std::string text(length, 't');
        const std::string data = seal(encryptor, text);
        EXPECT_EQ(data.find("ttt"), std::string::npos);
        EXPECT_EQ(opened(encryptor, data), text);
        EXPECT_EQ(opened(encryptor, data, "o"), text);
    }
}

TEST(EncryptorTest, TheSameIsNeverSealedAlike) {
    const Encryptor encryptor({"u", {}});
    EXPECT_NE(seal(encryptor, "text"), seal(encryptor, "text"));
    EXPECT_NE(encryptor.dictionary(), Encryptor({"u", {}}).dictionary());
}

TEST(EncryptorTest, PiecesOfAnySizeMakeOneWhole) {
    const Encryptor encryptor({"u", {}});
    for (const std::size_t piece : {1U, 7U, 16U, 100U, 1000U}) {
        const std::string text(500, 't');
        Encryptor::Stream stream(encryptor);
        std::string data;
        for (std::size_t at = 0; at < text.size(); at += piece)
            data += stream.next(std::string_view(text).substr(at, piece));
        data += stream.finish();
        EXPECT_EQ(data.size(), Encryptor::lengthOf(text.size()));
        EXPECT_EQ(opened(encryptor, data), text);
    }
    Encryptor::Stream empty(encryptor);
    EXPECT_EQ(opened(encryptor, std::string(empty.finish())), "");
}

TEST(EncryptorTest, StringsOfEntriesAreSealedOneByOne) {
    const Encryptor encryptor({"u", {}});
    const std::string entries = encryptor.withStrings("<</A(one)/B[2(three)]>>");
    const Object parsed = Parser(entries).parse();
    EXPECT_EQ(opened(encryptor, *(*parsed.dictionary())["A"].string()), "one");
    EXPECT_EQ(opened(encryptor, *(*(*parsed.dictionary())["B"].array())[1].string()), "three");
}

TEST(EncryptorTest, OnlyWhatWasForbiddenIsForbidden) {
    const auto permissions = [](bool copying, bool printing) {
        return dictionaryOf(Encryptor({"u", "o", copying, printing})).permissions;
    };
    EXPECT_EQ(permissions(true, true), 0xFFFFFFFCU);
    EXPECT_EQ(permissions(false, true), 0xFFFFFFECU);
    EXPECT_EQ(permissions(true, false), 0xFFFFF7F8U);
    EXPECT_EQ(permissions(false, false), 0xFFFFF7E8U);
}

TEST(EncryptorTest, WithoutAnOwnersPasswordTheUsersGivesAllRights) {
    const auto dictionary = dictionaryOf(Encryptor({"u", {}}));
    EXPECT_TRUE(openWithPassword(dictionary, "u").value().isOwner);
    EXPECT_FALSE(openWithPassword(dictionary, ""));
}

}  // namespace
}  // namespace quillon::pdf
