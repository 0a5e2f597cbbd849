#include "pdf/object/ReferenceRewriter.h"

#include <gtest/gtest.h>

#include <random>
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

TEST(ReferenceRewriter, SeesReferencesHoweverTheirNumbersAreWritten) {
    EXPECT_EQ(rewritten("[12 0 R 12  0 R 12 0  R 12 00 R 12 3 R 00000000000000000000000012 0 R 4294967195 0 R]"),
              "[112 0 R 112 0 R 112 0 R 112 0 R 112 0 R 112 0 R 4294967295 0 R]");
    EXPECT_EQ(rewritten("[ 0 R 0 R x 0 R(a) 0 R]"), "[ 0 R 0 R x 0 R(a) 0 R]");
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

TEST(ReferenceRewriter, LeavesTheTextAloneWhenTheFastRoadCannotBeGone) {
    std::string out = "before";
    EXPECT_EQ(ReferenceRewriter<Shift>(Shift()).fast("[5 0 R", 0, out).status,
              ReferenceRewriter<Shift>::Status::Malformed);
    EXPECT_EQ(out, "before");
}

/// Besides, all links lead to `there`, but for those to `stays`.
struct Redirect : Shift {
    [[nodiscard]] static bool editsLinks() { return true; }
    [[nodiscard]] static bool mayReplace(std::string_view text) { return text != "(stays)"; }
    [[nodiscard]] static std::optional<std::string> destination(std::string_view text) {
        if (text == "[7/Fit]") return "[5 0 R/Fit]";
        return text == "(stays)" ? std::nullopt : std::optional<std::string>("(there)");
    }
    [[nodiscard]] static Object withLinks(const Object&) { return std::string("through the parser"); }
};

std::string redirected(std::string_view text) {
    std::string out;
    ReferenceRewriter<Redirect>(Redirect()).value(text, out);
    return out;
}

TEST(ReferenceRewriter, RedirectsLinks) {
    EXPECT_EQ(redirected("<</A<</S/GoTo/D(here)>>/P 5 0 R>>"), "<</A<</S/GoTo/D(there)>>/P 105 0 R>>");
    EXPECT_EQ(redirected("<</Subtype/Link/Dest/here/P 5 0 R>>"), "<</Subtype/Link/Dest(there)/P 105 0 R>>");
    EXPECT_EQ(redirected("<</Subtype/Link/Dest 6 0 R/P 5 0 R>>"), "<</Subtype/Link/Dest (there)/P 105 0 R>>");
    EXPECT_EQ(redirected("[<</S/GoTo/D[7/Fit]>>]"), "[<</S/GoTo/D[105 0 R/Fit]>>]");
}

TEST(ReferenceRewriter, LeavesOtherLinksAsTheyAre) {
    for (const std::string text : {"<</S/GoTo/D(stays)>>", "<</S/GoToR/D(here)/F(x)>>", "<</BS<</S/D/D[3 3]>>>>",
                                   "[(/S/GoTo/D\\(here\\))]", "[/D(here)]", "<</S/GoTo/DA(here)>>"}) {
        EXPECT_EQ(redirected(text), text);
    }
    EXPECT_EQ(redirected("<</S/GoTo/D[5 0 R/Fit]>>"), "<</S/GoTo/D[105 0 R/Fit]>>");
}

TEST(ReferenceRewriter, TakesLinksThroughTheParserWhereItIsNotSure) {
    EXPECT_EQ(redirected("<</S 5 0 R/D(here)>>"), "(through the parser)");
    EXPECT_EQ(redirected("<</S/GoTo/D(here)/D(there)>>"), "(through the parser)");
    EXPECT_EQ(redirected("<</S/GoTo/D(here)>> % x"), "<</S/GoTo/D(there)>>");
    EXPECT_EQ(redirected("<</S/GoTo % x\n/D(here)>>"), "(through the parser)");
}

TEST(ReferenceRewriter, NamesThatOnlyLookLikeKeysDoNotMakeItReadALargeObjectAgainAndAgain) {
    std::string text = "<<";
    for (int i = 0; i < 200'000; ++i) text += "/A/D/B(x)";
    EXPECT_EQ(redirected(text + ">>"), "(through the parser)");
}

TEST(ReferenceRewriter, BothRoadsMeanTheSame) {
    std::mt19937 random(17);
    const std::string_view pieces[] = {"<</A ", ">>", "[",    "]",    "/R",     "5",  " 0 R",  " 9 0 R ", "(x 5 0 R)",
                                       "<41>",  " ",  "-1.5", "true", " 7 0 R", "/K", "(\\)(", ")"};
    for (int round = 0; round < 20000; ++round) {
        std::string text = random() % 2 == 0 ? "[" : "<</K";
        for (auto n = random() % 12; n > 0; --n) text += pieces[random() % std::size(pieces)];
        Parser parser(text);
        (void)parser.parse();
        std::string fast;
        if (!parser.clean() ||
            ReferenceRewriter<Shift>(Shift()).fast(text, 0, fast).status != ReferenceRewriter<Shift>::Status::Done) {
            continue;
        }
        std::string slow;
        ReferenceRewriter<Shift>(Shift()).slow(text, 0, slow);
        std::string fastAgain;
        Parser(fast).parse().write(fastAgain);
        EXPECT_EQ(fastAgain, slow) << text;
    }
}

TEST(ReferenceRewriter, DeepNestingIsCutOffAndNotFollowed) {
    const std::string out = rewritten(std::string(100'000, '['));
    EXPECT_LT(out.size(), 1000U);
    EXPECT_EQ(out.front(), '[');
    EXPECT_EQ(out.back(), ']');
}

}  // namespace
}  // namespace quillon::pdf
