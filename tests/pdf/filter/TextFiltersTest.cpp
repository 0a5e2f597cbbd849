#include "pdf/filter/TextFilters.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace quillon::pdf {
namespace {

/// LZW as TIFF and PDF write it: codes from 9 to 12 bits, most significant bit first.
std::string lzw(std::string_view data, bool earlyChange) {
    std::string out;
    unsigned bits = 0;
    unsigned held = 0;
    unsigned width = 9;
    const auto put = [&](unsigned code) {
        bits = bits << width | code;
        held += width;
        for (; held >= 8; held -= 8) out += static_cast<char>(bits >> (held - 8));
        bits &= (1U << held) - 1;
    };
    std::map<std::string, unsigned> codes;
    unsigned next = 258;
    const auto reset = [&] {
        codes.clear();
        for (unsigned c = 0; c < 256; ++c) codes[std::string(1, static_cast<char>(c))] = c;
        next = 258;
        width = 9;
    };
    put(256);
    reset();
    std::string run;
    for (const char c : data) {
        if (codes.contains(run + c)) {
            run += c;
            continue;
        }
        put(codes[run]);
        codes[run + c] = next++;
        // The reader learns of a code one code later than the writer.
        const unsigned known = next - 1 + (earlyChange ? 1U : 0U);
        width = known >= 2048 ? 12 : known >= 1024 ? 11 : known >= 512 ? 10 : 9;
        run = c;
        if (next == 4095) {
            put(codes[run]);
            run.clear();
            put(256);
            reset();
        }
    }
    if (!run.empty()) {
        put(codes[run]);
        const unsigned known = next + (earlyChange ? 1U : 0U);
        width = known >= 2048 ? 12 : known >= 1024 ? 11 : known >= 512 ? 10 : 9;
    }
    put(257);
    out += static_cast<char>(bits << (8 - held));
    return out;
}

std::string sample(std::size_t length) {
    std::mt19937 random(31);
    std::string text;
    while (text.size() < length) text += random() % 3 == 0 ? "aaaa" : std::string(1, static_cast<char>(random() % 40));
    return text;
}

TEST(AsciiHex, DecodesAndIgnoresWhiteSpace) {
    EXPECT_EQ(decodeAsciiHex("48 65\n6C6c6F>41"), "Hello");
    EXPECT_EQ(decodeAsciiHex("417>"), "Ap");
    EXPECT_EQ(decodeAsciiHex(""), "");
}

TEST(Ascii85, DecodesWholeAndBrokenGroups) {
    EXPECT_EQ(decodeAscii85("87cURD]i,\"Ebo80~>"), "Hello World!");
    EXPECT_EQ(decodeAscii85("87cURDZ~>"), "Hello");
    EXPECT_EQ(decodeAscii85("87cUR\nD]i,\"\tEbo80"), "Hello World!");
}

TEST(Ascii85, AZIsFourZeros) {
    EXPECT_EQ(decodeAscii85("z!!~>"), std::string(5, '\0'));
}

TEST(Ascii85, ALoneDigitAndStrayCharactersAreLeftOut) {
    EXPECT_EQ(decodeAscii85("87cURD]i,\"Ebo80!~>"), "Hello World!");
    EXPECT_EQ(decodeAscii85("\xff\x01~>"), "");
}

TEST(RunLength, DecodesRunsAndCopies) {
    EXPECT_EQ(decodeRunLength("\x02"
                              "abc\xfe"
                              "x\x80"
                              "zzz",
                              100),
              "abcxxx");
}

TEST(RunLength, DataThatBreaksOffIsTakenAsFarAsItGoes) {
    EXPECT_EQ(decodeRunLength("\x05"
                              "ab",
                              100),
              "ab");
    EXPECT_EQ(decodeRunLength("\xfe", 100), "");
    EXPECT_EQ(decodeRunLength("\x05", 100), "");
}

TEST(RunLength, MoreThanTheLimitIsRefused) {
    EXPECT_FALSE(decodeRunLength("\x81x\x81x", 200));
    EXPECT_TRUE(decodeRunLength("\x81x", 128));
}

TEST(Lzw, DecodesTheExampleOfTheStandard) {
    const std::string data("\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01", 9);
    EXPECT_EQ(decodeLzw(data, true, 100), "-----A---B");
}

TEST(Lzw, DecodesLongDataWithEitherTimeOfWidening) {
    const std::string text = sample(60'000);
    EXPECT_EQ(decodeLzw(lzw(text, true), true, 100'000), text);
    EXPECT_EQ(decodeLzw(lzw(text, false), false, 100'000), text);
}

TEST(Lzw, DataThatBreaksOffIsTakenAsFarAsItGoes) {
    const std::string text = sample(20'000);
    const std::string data = lzw(text, true);
    const auto out = decodeLzw(std::string_view(data).substr(0, data.size() / 2), true, 100'000);
    ASSERT_TRUE(out);
    EXPECT_GT(out->size(), 5000U);
    EXPECT_TRUE(text.starts_with(*out));
}

TEST(Lzw, MoreThanTheLimitIsRefused) {
    const std::string data = lzw(std::string(50'000, 'a'), true);
    EXPECT_FALSE(decodeLzw(data, true, 10'000));
    EXPECT_TRUE(decodeLzw(data, true, 50'000));
}

TEST(Lzw, RandomBytesDoNoHarm) {
    std::mt19937 random(37);
    for (int round = 0; round < 500; ++round) {
        std::string data;
        for (auto n = random() % 300; n > 0; --n) data += static_cast<char>(random());
        const auto out = decodeLzw(data, random() % 2 == 0, 10'000);
        EXPECT_LE(out.value_or("").size(), 10'000U);
    }
}

}  // namespace
}  // namespace quillon::pdf
