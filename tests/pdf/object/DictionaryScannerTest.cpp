#include "pdf/object/DictionaryScanner.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::pdf {
namespace {

std::string scanned(std::string_view text) {
    std::string out;
    DictionaryScanner scanner(text);
    for (DictionaryScanner::Entry entry; scanner.next(entry);) {
        out += std::string(entry.key) + '=' + std::string(entry.value) + ';';
    }
    return out + (scanner.valid() ? "valid" : "malformed");
}

TEST(DictionaryScanner, GivesKeysAndTheTextOfTheirValues) {
    EXPECT_EQ(scanned(" <</A 1 /B[1 2]/C<</D(>>)>>/E 5 0 R>>"), "A=1;B=[1 2];C=<</D(>>)>>;E=5 0 R;valid");
}

TEST(DictionaryScanner, SaysWhatIsNoDictionaryOrMalformed) {
    EXPECT_EQ(scanned("[1]"), "malformed");
    EXPECT_EQ(scanned(""), "malformed");
    EXPECT_EQ(scanned("<</A 1"), "A=1;malformed");
    EXPECT_EQ(scanned("<</A 1 2/B 3>>"), "A=1;malformed");
    EXPECT_EQ(scanned("<</A>>"), "malformed");
}

TEST(DictionaryScanner, AnEmptyDictionaryIsValid) {
    EXPECT_EQ(scanned("<<>>"), "valid");
    EXPECT_EQ(scanned("<< % nothing\n>>"), "valid");
}

TEST(DictionaryScanner, SkipsADictionary) {
    EXPECT_EQ(skipDictionary(" <</A 1>> x"), 9U);
    EXPECT_EQ(skipDictionary("<</A 1"), 0U);
}

TEST(DictionaryScanner, HonoursEscapesInKeys) {
    EXPECT_TRUE(keyIs("Type", "Type"));
    EXPECT_TRUE(keyIs("T#79pe", "Type"));
    EXPECT_FALSE(keyIs("T#79pes", "Type"));
    EXPECT_FALSE(keyIs("Types", "Type"));
}

TEST(DictionaryScanner, FindsTheLastValueOfAKey) {
    EXPECT_EQ(findValue("<</A 1/B 2/#41 3>>", "A"), "3");
    EXPECT_EQ(findValue("<</A 1>>", "B"), "");
    EXPECT_EQ(findValue("<</B<</A 1>>>>", "A"), "");
}

}  // namespace
}  // namespace quillon::pdf
