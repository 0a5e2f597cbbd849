#include "pdf/object/Object.h"
#include "pdf/object/Parser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace quillon::pdf {
namespace {

std::string written(const Object& object) {
    std::string out;
    object.write(out);
    return out;
}

TEST(Object, WritesEveryKindOfValue) {
    const std::string text = "[null true false 1 -2 0.5/Name(text)3 0 R<</K[1 2]/L<<>>>>]";
    EXPECT_EQ(written(Parser(text).parse()), text);
}

TEST(Object, EveryStringSurvivesWritingAndReading) {
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    for (const std::string& text :
         {all, std::string("()\\\r\n"), std::string("plain text with one \x01 in it"), std::string()}) {
        EXPECT_EQ(*Parser(written(Object(text))).parse().string(), text);
    }
}

TEST(Object, StringsAreEscapedOrInDigitsWhereTheyMustBe) {
    EXPECT_EQ(written(Object(std::string("plain ~!"))), "(plain ~!)");
    EXPECT_EQ(written(Object(std::string("a(b)c\\d\re"))), "(a\\(b\\)c\\\\d\\re)");
    EXPECT_EQ(written(Object(std::string("abc\x01"))), "(abc\x01)");
    EXPECT_EQ(written(Object(std::string("ab\x01"))), "<616201>");
}

TEST(Object, EveryNameSurvivesWritingAndReading) {
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_EQ(Parser(written(Object(Name{all}))).parse().name()->value, all);
}

TEST(Object, RealsReadBackTheSameAndHaveNoExponent) {
    for (const double value : {0.1, -1.0 / 3, 1e-20, 123456789.125, 1e15}) {
        const std::string text = written(Object(value));
        EXPECT_EQ(text.find_first_of("eE"), std::string::npos) << text;
        EXPECT_DOUBLE_EQ(*Parser(text).parse().number(), value) << text;
    }
}

TEST(Object, NumbersThatAreNoneAreWrittenAsZero) {
    EXPECT_EQ(written(Object(std::nan(""))), "0");
    EXPECT_EQ(written(Object(std::numeric_limits<double>::infinity())), "0");
}

TEST(Object, ARealWithTheValueOfAnIntegerIsOne) {
    EXPECT_EQ(Object(3.0).integer(), 3);
    EXPECT_FALSE(Object(3.5).integer());
    EXPECT_FALSE(Object(1e300).integer());
}

TEST(Dictionary, KeepsTheOrderOfItsFile) {
    EXPECT_EQ(written(Parser("<</Z 1/A 2/M 3>>").parse()), "<</Z 1/A 2/M 3>>");
}

}  // namespace
}  // namespace quillon::pdf
