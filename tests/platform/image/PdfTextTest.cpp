#include "platform/image/PdfText.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillon::testing {

TEST(PdfTextTest, NumbersAreShortAndWithoutExponent) {
    EXPECT_EQ(pdfNumber(595), "595");
    EXPECT_EQ(pdfNumber(-0.5), "-0.5");
    EXPECT_EQ(pdfNumber(841.89), "841.89");
    EXPECT_EQ(pdfNumber(1e-7), "0.0000001");
    EXPECT_EQ(pdfNumber(1e21), "1000000000000000000000");
}

TEST(PdfTextTest, NumbersReadBackAsTheSame) {
    for (const double value : {72 * 2480 / 300.0, 1.0 / 3, 14'399.999999})
        EXPECT_EQ(std::strtod(pdfNumber(value).c_str(), nullptr), value);
}

TEST(PdfTextTest, StringsAreHexadecimal) {
    EXPECT_EQ(pdfHexString(std::string("\x00\x7F\xFF", 3)), "<007FFF>");
}

}  // namespace quillon::testing
