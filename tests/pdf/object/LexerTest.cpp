#include "pdf/object/Lexer.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

namespace quillon::pdf {
namespace {

Token first(std::string_view text) {
    return Lexer(text).next();
}

std::string stringOf(std::string_view text) {
    const Token token = first(text);
    EXPECT_EQ(token.kind, TokenKind::String);
    return token.value;
}

TEST(Lexer, ReadsIntegers) {
    for (const auto& [text, value] : {std::pair{"0", 0}, {"17", 17}, {"+3", 3}, {"-98", -98}, {"007", 7}}) {
        EXPECT_EQ(first(text).kind, TokenKind::Integer) << text;
        EXPECT_EQ(first(text).integer, value) << text;
    }
}

TEST(Lexer, ReadsReals) {
    for (const auto& [text, value] :
         {std::pair{"34.5", 34.5}, {"-3.62", -3.62}, {"4.", 4.0}, {"-.002", -.002}, {".5", .5}}) {
        EXPECT_EQ(first(text).kind, TokenKind::Real) << text;
        EXPECT_DOUBLE_EQ(first(text).real, value) << text;
    }
}

TEST(Lexer, SaturatesIntegersThatDoNotFit) {
    EXPECT_EQ(first("99999999999999999999").integer, std::numeric_limits<std::int64_t>::max());
    EXPECT_LT(first("-99999999999999999999").integer, -9'000'000'000'000'000'000);
}

TEST(Lexer, ReadsTheNumbersThatLenientReadersTake) {
    EXPECT_EQ(first("--5").integer, -5);
    EXPECT_EQ(first("12-34").integer, 12);
    EXPECT_EQ(first("1e5").kind, TokenKind::Keyword);
    EXPECT_EQ(first("-").kind, TokenKind::Keyword);
}

TEST(Lexer, DecodesEscapesInLiteralStrings) {
    EXPECT_EQ(stringOf("(a\\n\\r\\t\\b\\f\\(\\)\\\\\\q)"), "a\n\r\t\b\f()\\q");
}

TEST(Lexer, DecodesOctalCodesOfOneToThreeDigits) {
    EXPECT_EQ(stringOf("(\\5\\53\\053\\0533\\8)"), std::string("\5+++3") + "8");
}

TEST(Lexer, KeepsBalancedBracketsInStrings) {
    EXPECT_EQ(stringOf("(a(b(c))d)e)"), "a(b(c))d");
}

TEST(Lexer, ReadsEveryEndOfLineInAStringAsALineFeed) {
    EXPECT_EQ(stringOf("(a\r\nb\rc\nd)"), "a\nb\nc\nd");
    EXPECT_EQ(stringOf("(a\\\r\nb\\\rc\\\nd)"), "abcd");
}

TEST(Lexer, DecodesHexadecimalStrings) {
    EXPECT_EQ(stringOf("<48 65\n6C6c6F>"), "Hello");
    EXPECT_EQ(stringOf("<417>"), "Ap");
    EXPECT_EQ(stringOf("<>"), "");
}

TEST(Lexer, DecodesNames) {
    EXPECT_EQ(first("/A#20B#2fC").value, "A B/C");
    EXPECT_EQ(first("/").kind, TokenKind::Name);
    EXPECT_EQ(first("/").value, "");
    EXPECT_EQ(first("/A#G1#").value, "A#G1#");
}

TEST(Lexer, PassesOverCommentsAndAllWhiteSpace) {
    Lexer lexer(std::string_view("%x\r\0\t\f % y\n 7", 14));
    EXPECT_EQ(lexer.next().integer, 7);
    EXPECT_EQ(lexer.next().kind, TokenKind::End);
}

TEST(Lexer, SplitsTokensThatTouch) {
    Lexer lexer("<</A[1(s)]>>endobj");
    const TokenKind kinds[] = {TokenKind::DictionaryOpen,  TokenKind::Name,    TokenKind::ArrayOpen,
                               TokenKind::Integer,         TokenKind::String,  TokenKind::ArrayClose,
                               TokenKind::DictionaryClose, TokenKind::Keyword, TokenKind::End};
    for (const TokenKind kind : kinds) EXPECT_EQ(lexer.next().kind, kind);
}

TEST(Lexer, TakesWhatTheTextBreaksOffAsFarAsItGoes) {
    EXPECT_EQ(stringOf("(abc"), "abc");
    EXPECT_EQ(stringOf("(abc\\"), "abc");
    EXPECT_EQ(stringOf("<4142"), "AB");
    EXPECT_EQ(first("/Ab#4").value, "Ab#4");
}

TEST(Lexer, GivesEndForEverAfterTheLastToken) {
    Lexer lexer("1");
    (void)lexer.next();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(lexer.next().kind, TokenKind::End);
}

TEST(Lexer, EndsOnAnyBytes) {
    std::mt19937 random(7);  // a fixed seed, so that a failure can be repeated
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 64, '\0');
        for (char& c : text) c = random() % 2 == 0 ? static_cast<char>(random()) : "()<>[]{}/%\\#0 \n"[random() % 15];
        Lexer lexer(text);
        std::size_t tokens = 0;
        while (lexer.next().kind != TokenKind::End && tokens <= text.size()) ++tokens;
        EXPECT_LE(tokens, text.size());
        EXPECT_LE(lexer.position(), text.size());
    }
}

TEST(ReadUnsigned, StopsBehindTheDigits) {
    std::size_t position = 2;
    EXPECT_EQ(readUnsigned("ab123c", position), 123U);
    EXPECT_EQ(position, 5U);
}

TEST(ReadUnsigned, GivesNothingWithoutDigitsOrWhenTheValueDoesNotFit) {
    std::size_t position = 0;
    EXPECT_FALSE(readUnsigned("x1", position));
    position = 0;
    EXPECT_FALSE(readUnsigned("123456789012345678901", position));
}

}  // namespace
}  // namespace quillon::pdf
