#include "pdf/object/Parser.h"
#include "pdf/security/CryptFilter.h"

#include <gtest/gtest.h>

namespace quillon::pdf {
namespace {

Dictionary parsed(std::string_view text) {
    return *Parser(text).parse().dictionary();
}

std::string plain(std::string_view text) {
    const PlainFilters filters = withoutCryptFilter(parsed(text));
    std::string out;
    filters.filter.write(out);
    filters.parameters.write(out);
    return out;
}

TEST(CryptFilterTest, TheNameIsInTheParameters) {
    EXPECT_EQ(cryptFilterOf(parsed("<</Filter/Crypt/DecodeParms<</Name/My>>>>")), "My");
    EXPECT_EQ(cryptFilterOf(parsed("<</Filter[/Crypt]/DecodeParms<</Name/My>>>>")), "My");
    EXPECT_EQ(cryptFilterOf(parsed("<</Filter[/Crypt/FlateDecode]/DecodeParms[<</Name/My>>null]>>")), "My");
    EXPECT_EQ(cryptFilterOf(parsed("<</Filter/Crypt>>")), "Identity");
    EXPECT_EQ(cryptFilterOf(parsed("<</Filter[/Crypt/FlateDecode]/DecodeParms[]>>")), "Identity");
    EXPECT_EQ(cryptFilterOf(parsed("<</Filter/FlateDecode/DecodeParms<</Name/My>>>>")), std::nullopt);
    EXPECT_EQ(cryptFilterOf(parsed("<<>>")), std::nullopt);
}

TEST(CryptFilterTest, IsTakenAwayWithItsParameters) {
    EXPECT_EQ(plain("<</Filter/Crypt/DecodeParms<</Name/My>>>>"), "null null");
    EXPECT_EQ(plain("<</Filter[/Crypt]/DecodeParms<</Name/My>>>>"), "null null");
    EXPECT_EQ(plain("<</Filter[/Crypt/FlateDecode]/DecodeParms[<</Name/My>><</Predictor 12>>]>>"),
              "[/FlateDecode][<</Predictor 12>>]");
    EXPECT_EQ(plain("<</Filter[/Crypt/FlateDecode]>>"), "[/FlateDecode]null");
    EXPECT_EQ(plain("<</Filter/FlateDecode/DecodeParms<</Predictor 12>>>>"), "/FlateDecode<</Predictor 12>>");
}

}  // namespace
}  // namespace quillon::pdf
