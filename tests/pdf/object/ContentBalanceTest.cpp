#include "pdf/object/ContentBalance.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace quillon::pdf {
namespace {

TEST(ContentBalance, WhatEndsAllThatItBeginsIsBalanced) {
    for (const char* content :
         {"", " \n", "q Q", "q q Q Q", "q 1 0 0 1 0 0 cm (Q) Tj <51> Tj /Q gs Q", "BT /F 12 Tf (a\\)(b)) Tj ET",
          "/P <</MCID 0 /Q [1 2]>> BDC EMC", "/P BMC q EMC Q", "[(a) -12.5 (b)] TJ", "% Q ( unclosed\nq Q",
          "BI /W 1 /H 1 /BPC 8 /CS /G ID Q Q Q EI Q q", "BX true foo EX", "q Q % end\n"}) {
        const bool imageTail = std::string_view(content).ends_with("EI Q q");
        EXPECT_EQ(isBalanced(content), !imageTail) << content;
    }
}

TEST(ContentBalance, AnythingLeftOpenIsNot) {
    for (const char* content : {"q", "q q Q", "BT", "BT (a) Tj", "/P BMC", "(unclosed", "<00", "[1 2", "<</A 1",
                                "1 0 0", "/Name", "Q % comment", "BI /W 1 ID abc", "(a\\", "(a\\)", "((a)", "q Q ]"}) {
        EXPECT_FALSE(isBalanced(content)) << content;
    }
}

TEST(ContentBalance, ClosingWhatIsNotOpenIsNot) {
    for (const char* content : {"Q", "Q q", "q Q Q q", "ET", "BT BT ET", "EMC /P BMC", "] [", ">> <<"}) {
        EXPECT_FALSE(isBalanced(content)) << content;
    }
}

TEST(ContentBalance, NumbersAndStringsOfAnyLengthArePassedOver) {
    for (std::size_t length = 0; length < 200; ++length) {
        const std::string numbers = std::string(length, ' ') + "1.5 " + std::string(length, '7') + "\t\r\n-3";
        const std::string text = '(' + std::string(length, 'Q') + "\\)(" + std::string(length, '9') + "))";
        EXPECT_TRUE(isBalanced("q " + numbers + " cm " + text + "Tj Q" + std::string(length, ' '))) << length;
        EXPECT_FALSE(isBalanced("q " + numbers + " cm " + text + "Tj Q " + numbers)) << length;
        EXPECT_FALSE(isBalanced("q " + numbers + " cm Q " + numbers + "% end\n")) << length;
        EXPECT_FALSE(isBalanced(numbers + " cm Q " + text + "Tj q")) << length;
    }
}

TEST(ContentBalance, AZeroByteIsABlank) {
    EXPECT_TRUE(isBalanced(std::string_view("q\0\0 1\0\0002 m\0Q\0", 13)));
    EXPECT_FALSE(isBalanced(std::string_view("q Q 1\0", 6)));
}

TEST(ContentBalance, InlineImagesAreSteppedOver) {
    EXPECT_TRUE(isBalanced("q BI /W 2 /H 1 /BPC 8 ID \x01q(\xff\nEI\nQ"));
    EXPECT_TRUE(isBalanced(std::string_view("BI /W 1 ID (\0( EI", 18)));
}

}  // namespace
}  // namespace quillon::pdf
