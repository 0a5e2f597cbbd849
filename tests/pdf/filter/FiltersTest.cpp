#include "pdf/filter/Filters.h"
#include "pdf/filter/Flate.h"
#include "pdf/object/Parser.h"
#include "tests/support/PredictedUp.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::pdf {
namespace {

std::optional<std::string> decoded(std::string_view dictionary, std::string_view data, std::size_t limit = 1000) {
    return decodeStream(*Parser(dictionary).parse().dictionary(), data, limit);
}

std::string deflated(std::string_view data) {
    std::string out;
    Deflater(6).deflate(data, out);
    return out;
}

TEST(Filters, DataWithoutAFilterIsReturnedAsItIs) {
    EXPECT_EQ(decoded("<<>>", "abc"), "abc");
    EXPECT_EQ(decoded("<</Filter[]>>", "abc"), "abc");
}

TEST(Filters, AreUndoneInTheOrderOfTheirList) {
    EXPECT_EQ(decoded("<</Filter[/ASCIIHexDecode/RunLengthDecode]>>", "026162 63FE78 80>"), "abcxxx");
}

TEST(Filters, AreKnownByTheirShortNames) {
    EXPECT_EQ(decoded("<</Filter/AHx>>", "41>"), "A");
    EXPECT_EQ(decoded("<</Filter/Fl>>", deflated("A")), "A");
    EXPECT_EQ(decoded("<</Filter/A85>>", "87cURDZ~>"), "Hello");
    EXPECT_EQ(decoded("<</Filter/RL>>",
                      "\x01"
                      "ab"),
              "ab");
}

TEST(Filters, EachHasTheParametersAtItsPlace) {
    const std::string data = deflated(predictedUp("abcdabce", 4));
    EXPECT_EQ(decoded("<</Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 4>>>>", data), "abcdabce");
    EXPECT_EQ(decoded("<</Filter[/FlateDecode]/DecodeParms[<</Predictor 12/Columns 4>>]>>", data), "abcdabce");
    std::string hex;
    for (const char c : data) {
        hex += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
        hex += "0123456789abcdef"[c & 15];
    }
    EXPECT_EQ(decoded("<</Filter[/AHx/Fl]/DecodeParms[null<</Predictor 12/Columns 4>>]>>", hex), "abcdabce");
}

TEST(Filters, AnUnknownFilterGivesNothing) {
    EXPECT_FALSE(decoded("<</Filter/DCTDecode>>", "abc"));
    EXPECT_FALSE(decoded("<</Filter[/AHx/JPXDecode]>>", "41>"));
    EXPECT_FALSE(decoded("<</Filter[1]>>", "abc"));
}

TEST(Filters, MoreThanTheLimitIsRefusedAtEveryStage) {
    const std::string twice = deflated(deflated(std::string(100'000, 'x')));
    EXPECT_TRUE(decoded("<</Filter[/Fl/Fl]>>", twice, 100'000));
    EXPECT_FALSE(decoded("<</Filter[/Fl/Fl]>>", twice, 99'999));
    EXPECT_FALSE(decoded("<</Filter[/Fl/Fl]>>", twice, 50));
}

TEST(Filters, AnEndlessListOfFiltersIsRefused) {
    std::string list;
    for (int i = 0; i < 1000; ++i) list += "/AHx";
    EXPECT_FALSE(decoded("<</Filter[" + list + "]>>", "41>"));
}

}  // namespace
}  // namespace quillon::pdf
