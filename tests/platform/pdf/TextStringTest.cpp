#include "platform/pdf/TextString.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(TextString, WritesPlainTextInPdfDocEncoding) {
    EXPECT_EQ(toTextString(QStringLiteral("Plain (text)")), "Plain (text)");
    EXPECT_EQ(toTextString(QStringLiteral("\u00e4\u20ac\u2022\ufb01")), "\xe4\xa0\x80\x93");
    EXPECT_EQ(toTextString(QString()), "");
}

TEST(TextString, WritesEverythingElseInUtf16) {
    EXPECT_EQ(toTextString(QStringLiteral("a\u4e2d")), std::string("\xfe\xff\0a\x4e\x2d", 6));
    EXPECT_EQ(toTextString(QString::fromUcs4(U"\U0001f600")), std::string("\xfe\xff\xd8\x3d\xde\x00", 6));
}

TEST(TextString, ReadsPdfDocEncoding) {
    EXPECT_EQ(fromTextString("\xe4\xa0\x80\x93\x18"), QStringLiteral("\u00e4\u20ac\u2022\ufb01\u02d8"));
}

TEST(TextString, ReadsUtf16OfEitherByteOrder) {
    EXPECT_EQ(fromTextString(std::string("\xfe\xff\0a\x4e\x2d", 6)), QStringLiteral("a\u4e2d"));
    EXPECT_EQ(fromTextString(std::string("\xff\xfe"
                                         "a\0\x2d\x4e",
                                         6)),
              QStringLiteral("a\u4e2d"));
    EXPECT_EQ(fromTextString("\xfe\xff"), QString());
}

TEST(TextString, ReadsUtf8) {
    EXPECT_EQ(fromTextString("\xef\xbb\xbf"
                             "a\xe4\xb8\xad"),
              QStringLiteral("a\u4e2d"));
}

TEST(TextString, EveryTextSurvives) {
    for (char32_t code = 1; code < 0x3000; ++code) {
        const QString text = QStringLiteral("x") + QString::fromUcs4(&code, 1);
        EXPECT_EQ(fromTextString(toTextString(text)), text) << static_cast<unsigned>(code);
    }
}

TEST(TextString, TextThatBeginsLikeAMarkSurvives) {
    for (const QString& text :
         {QStringLiteral("\u00fe\u00ffab"), QStringLiteral("\u00ff\u00feab"), QStringLiteral("\u00ef\u00bb\u00bfab")}) {
        EXPECT_EQ(fromTextString(toTextString(text)), text);
    }
}

}  // namespace
}  // namespace quillon
