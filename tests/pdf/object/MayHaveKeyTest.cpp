#include "pdf/object/MayHaveKey.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace quillon::pdf {
namespace {

TEST(MayHaveKey, LooksForTheWholeNameAndNoMore) {
    EXPECT_TRUE(mayHaveKey("<</DA(x)>>", "DA"));
    EXPECT_TRUE(mayHaveKey("<</DAx 1/DA", "DA"));
    for (const char* text : {"", "DA", "<</DAx(x)>>", "<</D/A>>", "<</A(DA)>>", "<</D#41(x)>>", "<</D"}) {
        EXPECT_FALSE(mayHaveKey(text, "DA")) << text;
    }
}

TEST(ValueKey, MayBeWhereverItsNameStands) {
    for (const char* text : {"<</V 5>>", "<</FT/Sig/V<<>>>>", "<</Kids[<</V(a)>>]>>", "<</#56 5>>", "/V", "<</V/V>>",
                             "<</Vx 1/V\n2>>", "<</#57 1/#56[]>>"}) {
        EXPECT_TRUE(mayHaveValueKey(text)) << text;
    }
}

TEST(ValueKey, IsNoLongerNameAndNoTextWithoutSlash) {
    for (const char* text : {"", "V", "<</Type/Annot>>", "<</Vertices[1 2]>>", "<</A(V)>>", "<</DV 5>>", "<</#57 5>>",
                             "<</#560 5>>", "<</A(#56)>>"}) {
        EXPECT_FALSE(mayHaveValueKey(text)) << text;
    }
}

TEST(ValueKey, IsFoundAtAnyPlace) {
    for (std::size_t before = 0; before < 200; ++before) {
        EXPECT_TRUE(mayHaveValueKey(std::string(before, 'V') + "/V 1")) << before;
        EXPECT_TRUE(mayHaveValueKey(std::string(before, '#') + "/#56 1")) << before;
        EXPECT_FALSE(mayHaveValueKey(std::string(before, ' ') + "/W 1 (V)")) << before;
    }
}

}  // namespace
}  // namespace quillon::pdf
