#include "pdf/security/PasswordForms.h"

#include <gtest/gtest.h>

namespace quillon::pdf {
namespace {

using Forms = std::vector<std::string>;

TEST(LegacyPasswordForms, AreInPdfDocEncodingFirst) {
    EXPECT_EQ(legacyPasswordForms("abc"), Forms{"abc"});
    EXPECT_EQ(legacyPasswordForms(""), Forms{""});
    EXPECT_EQ(legacyPasswordForms("contraseña"), (Forms{"contrase\xF1"
                                                        "a",
                                                        "contraseña"}));
    EXPECT_EQ(legacyPasswordForms("€"), (Forms{"\xA0", "€"}));
}

TEST(LegacyPasswordForms, AreAsTypedWhereTheEncodingEnds) {
    EXPECT_EQ(legacyPasswordForms("пароль"), Forms{"пароль"});
    EXPECT_EQ(legacyPasswordForms("😀"), Forms{"😀"});
    EXPECT_EQ(legacyPasswordForms("\xFF\xFE"), Forms{"\xFF\xFE"});
}

/// The examples of RFC 4013, 3.
TEST(PasswordForms, AreNormalised) {
    EXPECT_EQ(passwordForms("I\u00ADX"), (Forms{"IX", "I\u00ADX"}));
    EXPECT_EQ(passwordForms("user"), Forms{"user"});
    EXPECT_EQ(passwordForms("USER"), Forms{"USER"});
    EXPECT_EQ(passwordForms("\u00AA"), (Forms{"a", "\u00AA"}));
    EXPECT_EQ(passwordForms("\u2168"), (Forms{"IX", "\u2168"}));
    EXPECT_EQ(passwordForms("\x07"), Forms{"\x07"}) << "prohibited";
    EXPECT_EQ(passwordForms("\u0627\u0031"), Forms{"\u0627\u0031"}) << "of both directions";
}

TEST(PasswordForms, AComposedAndADecomposedLetterAreTheSame) {
    EXPECT_EQ(passwordForms("contrasen\u0303a").front(), "contraseña");
    EXPECT_EQ(passwordForms("пароль"), Forms{"пароль"});
}

TEST(PasswordForms, EndBehind127Bytes) {
    const std::string longest(127, 'x');
    EXPECT_EQ(passwordForms(longest + "y"), Forms{longest});
    EXPECT_EQ(passwordForms("\xFF"), Forms{"\xFF"});
}

}  // namespace
}  // namespace quillon::pdf
