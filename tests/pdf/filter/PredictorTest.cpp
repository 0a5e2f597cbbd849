#include "pdf/filter/Predictor.h"
#include "pdf/object/Parser.h"
#include "tests/support/PredictedUp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

namespace quillon::pdf {
namespace {

Dictionary parameters(std::string_view text) {
    return *Parser(text).parse().dictionary();
}

/// PNG filters by their definition, on whole rows of `rowBytes` bytes.
std::string filtered(const std::string& data, std::size_t rowBytes, std::size_t pixelBytes, int filter) {
    std::string out;
    const auto at = [&](std::size_t row, std::ptrdiff_t column) -> int {
        if (column < 0 || row == SIZE_MAX) return 0;
        return static_cast<unsigned char>(data[row * rowBytes + static_cast<std::size_t>(column)]);
    };
    for (std::size_t row = 0; row < data.size() / rowBytes; ++row) {
        out += static_cast<char>(filter);
        for (std::size_t column = 0; column < rowBytes; ++column) {
            const auto x = static_cast<std::ptrdiff_t>(column);
            const auto pixel = static_cast<std::ptrdiff_t>(pixelBytes);
            const int a = at(row, x - pixel);
            const int b = at(row - 1, x);
            const int c = at(row - 1, x - pixel);
            const int p = a + b - c;
            int predicted = 0;
            if (filter == 1) predicted = a;
            if (filter == 2) predicted = b;
            if (filter == 3) predicted = (a + b) / 2;
            if (filter == 4) {
                predicted = std::abs(p - a) <= std::abs(p - b) && std::abs(p - a) <= std::abs(p - c) ? a
                            : std::abs(p - b) <= std::abs(p - c)                                     ? b
                                                                                                     : c;
            }
            out += static_cast<char>(at(row, x) - predicted);
        }
    }
    return out;
}

std::string noise(std::size_t length) {
    std::mt19937 random(29);
    std::string data;
    for (std::size_t i = 0; i < length; ++i) data += static_cast<char>(random());
    return data;
}

class PngPrediction : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(EachFilter, PngPrediction, testing::Range(0, 5));

TEST_P(PngPrediction, IsUndone) {
    const std::string data = noise(12 * 7);
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 15/Colors 3/Columns 4>>"), filtered(data, 12, 3, GetParam())),
              data);
}

TEST_P(PngPrediction, IsUndoneForPixelsSmallerThanAByteAndLargerThanOne) {
    const std::string data = noise(40);
    EXPECT_EQ(
        undoPrediction(parameters("<</Predictor 10/BitsPerComponent 1/Columns 60>>"), filtered(data, 8, 1, GetParam())),
        data);
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 12/BitsPerComponent 16/Colors 2/Columns 2>>"),
                             filtered(data, 8, 4, GetParam())),
              data);
}

TEST(Predictor, EachRowHasAPngFilterOfItsOwn) {
    const std::string data("\1abcd\2\1\1\1\1\0xyzw", 15);
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 15/Columns 4>>"), data),
              "a\xc3"
              "&\x8a"
              "b\xc4'\x8b"
              "xyzw");
}

TEST(Predictor, TiffPredictionIsUndone) {
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 2/Colors 1/Columns 3>>"), "\1\1\1\5\1\1"), "\1\2\3\5\6\7");
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 2/Colors 2/Columns 2>>"), "\1\2\1\1\3\4\1\1"),
              "\1\2\2\3\3\4\4\5");
}

TEST(Predictor, DataWithoutPredictionIsReturnedAsItIs) {
    EXPECT_EQ(undoPrediction(Dictionary(), "abc"), "abc");
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 1/Columns 5>>"), "abc"), "abc");
    EXPECT_EQ(undoPrediction(parameters("<</Predictor -7>>"), "abc"), "abc");
}

TEST(Predictor, ALastRowThatBreaksOffReadsAsZeros) {
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 10/Columns 4>>"), std::string("\0abcd\0xy", 8)),
              std::string("abcdxy\0\0", 8));
    EXPECT_EQ(undoPrediction(parameters("<</Predictor 10/Columns 4>>"), ""), "");
}

TEST(Predictor, RowsLongerThanAnyMemoryDoNoHarm) {
    for (const std::string_view text : {"<</Predictor 12/Columns 99999999/Colors 99999999/BitsPerComponent 99999999>>",
                                        "<</Predictor 2/Columns 99999999/Colors 99999999>>"}) {
        EXPECT_LT(undoPrediction(parameters(text), std::string("\2abcdef")).size(), 100U) << text;
    }
}

TEST(Predictor, RowsOfAnyWidthArePredictedFromTheOneAbove) {
    for (std::size_t width = 1; width < 20; ++width) {
        const std::string columns = "<</Predictor 12/Columns " + std::to_string(width) + ">>";
        for (const std::size_t count : {1U, 2U, 3U, 9U}) {
            const std::string rows = noise(width * count);
            EXPECT_EQ(undoPrediction(parameters(columns), predictedUp(rows, width)), rows) << width << ' ' << count;
        }
    }
}

}  // namespace
}  // namespace quillon::pdf
