#include "pdf/object/ReferenceRewriter.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::pdf {
namespace {

/// Adds 100 to every number; 9 becomes null.
struct Shift {
    std::uint32_t operator()(Reference reference) const { return reference.number == 9 ? 0 : reference.number + 100; }
};

std::string rewritten(std::string_view text) {
    std::string out;
    ReferenceRewriter<Shift>(Shift()).value(text, out);
    return out;
}

TEST(ReferenceRewriter, ChangesReferencesAndNothingElse) {
    EXPECT_EQ(rewritten("<</A 5 0 R/B[7 0 R 8]/C/R>>"), "<</A 105 0 R/B[107 0 R 8]/C/R>>");
}

TEST(ReferenceRewriter, WritesNullForAReferenceThatLeadsNowhere) {
    EXPECT_EQ(rewritten("[9 0 R]"), "[null]");
}

TEST(ReferenceRewriter, KeepsStringsThatLookLikeReferences) {
    EXPECT_EQ(rewritten("[(5 0 R \\) 5 0 R) <35203020 52>]"), "[(5 0 R \\) 5 0 R) <35203020 52>]");
}

TEST(ReferenceRewriter, SeesReferencesAcrossLines) {
    EXPECT_EQ(rewritten("[5\n0\rR]"), "[105 0 R]");
}

TEST(ReferenceRewriter, KeepsNumbersThatTouchARegularCharacter) {
    EXPECT_EQ(rewritten("[1.5 0 R]"), "[1.5 0 R]");
    EXPECT_EQ(rewritten("[/A5 0 R]"), "[/A5 0 R]");
}

TEST(ReferenceRewriter, TakesTheSlowRoadAroundComments) {
    EXPECT_EQ(rewritten("<</A % 6 0 R >>\n 5 0 R>>"), "<</A 105 0 R>>");
}

TEST(ReferenceRewriter, ClosesWhatIsNotClosed) {
    EXPECT_EQ(rewritten("<</A[5 0 R"), "<</A[105 0 R]>>");
    EXPECT_EQ(rewritten("<</A[5 0 R>> endobj 6 0 obj <<>>"), "<</A[105 0 R]>>");
}

TEST(ReferenceRewriter, StopsAtTheNextObjectWhenABracketIsMissing) {
    EXPECT_EQ(rewritten("<</A 5 0 R endobj 6 0 obj <</B 1>> >>"), "<</A 105 0 R>>");
}

TEST(ReferenceRewriter, RewritesABareReference) {
    EXPECT_EQ(rewritten(" 5 0 R "), "105 0 R");
}

}  // namespace
}  // namespace quillon::pdf
