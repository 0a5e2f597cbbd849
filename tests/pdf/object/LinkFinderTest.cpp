#include "pdf/object/LinkFinder.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::pdf {
namespace {

using Kind = FoundLink::Kind;

/// What is found at the last `D`, or `#`, that is marked by a bar before it.
struct Marked {
    explicit Marked(std::string marked) : text(std::move(marked)), place(text.find('|')) { text.erase(place, 1); }

    [[nodiscard]] std::string behind() const { return std::string(destinationBehind(text, place)); }
    [[nodiscard]] Kind kind() const { return findLink(text, text.find("<<"), place).kind; }
    [[nodiscard]] std::string value() const {
        const FoundLink found = findLink(text, text.find("<<"), place);
        return text.substr(found.begin, found.end - found.begin);
    }

    std::string text;
    std::size_t place;
};

TEST(DestinationBehind, IsTheValueOfTheKeysThatDestinationsHave) {
    EXPECT_EQ(Marked("<</S/GoTo/|D(a \\) b)>>").behind(), "(a \\) b)");
    EXPECT_EQ(Marked("<</|Dest <61>>>").behind(), "<61>");
    EXPECT_EQ(Marked("<</|D/old/S/GoTo>>").behind(), "/old");
    EXPECT_EQ(Marked("<</|D 12 0 R>>").behind(), "12 0 R");
    EXPECT_EQ(Marked("<</D|#65st(goal)>>").behind(), "(goal)");
}

TEST(DestinationBehind, IsOfAnArrayOnlyWhereThatGivesAnIndex) {
    EXPECT_EQ(Marked("<</|D[3/Fit]>>").behind(), "[3/Fit]");
    EXPECT_EQ(Marked("<</|D[3 0 R/Fit]>>").behind(), "");
    EXPECT_EQ(Marked("<</|D[ 3 0 R /XYZ 1 2 null]>>").behind(), "");
}

TEST(DestinationBehind, IsNothingForOtherNamesAndValues) {
    EXPECT_EQ(Marked("<</|DeviceRGB(x)>>").behind(), "");
    EXPECT_EQ(Marked("<</|Decode[1 0]>>").behind(), "");
    EXPECT_EQ(Marked("<</|D 5>>").behind(), "");
    EXPECT_EQ(Marked("<</|D<</A 1>>>>").behind(), "");
    EXPECT_EQ(Marked("<</A|D(x)>>").behind(), "");
    EXPECT_EQ(Marked("<</A (|D)>>").behind(), "");
    EXPECT_EQ(Marked("<</|D").behind(), "");
    EXPECT_EQ(Marked("<</|D(x").behind(), "");
}

TEST(DestinationBehind, LooksAtNoMoreOfALongNameThanItsKeysHave) {
    for (const std::string part : {"#", "De", "#44"}) {
        std::string text = "<</";
        for (int i = 0; i < 300'000; ++i) text += part;
        text += "(x)>>";
        for (std::size_t at = text.find_first_of("D#"); at != std::string::npos;
             at = text.find_first_of("D#", at + 1)) {
            ASSERT_EQ(destinationBehind(text, at), "");
        }
    }
}

TEST(FindLink, ADIsOneOfAnActionThatGoesSomewhere) {
    EXPECT_EQ(Marked("<</S/GoTo/|D(a)>>").kind(), Kind::Destination);
    EXPECT_EQ(Marked("<</|D(a)/Type/Action/S /GoTo>>").value(), "(a)");
    EXPECT_EQ(Marked("<</S/G#6FTo/|D(a)>>").kind(), Kind::Destination);
    EXPECT_EQ(Marked("<</S/GoToR/F(x)/|D(a)>>").kind(), Kind::None);
    EXPECT_EQ(Marked("<</|D(a)>>").kind(), Kind::None);
}

TEST(FindLink, ADestIsOneOfALinkOrAnOutlineItem) {
    EXPECT_EQ(Marked("<</Subtype/Link/|Dest(a)>>").kind(), Kind::Destination);
    EXPECT_EQ(Marked("<</Title(t)/Parent 1 0 R/|Dest(a)>>").kind(), Kind::Destination);
    EXPECT_EQ(Marked("<</Title(t)/|Dest(a)>>").kind(), Kind::None);
    EXPECT_EQ(Marked("<</Subtype/Text/|Dest(a)>>").kind(), Kind::None);
}

TEST(FindLink, ANameThatIsAValueIsNoKey) {
    EXPECT_EQ(Marked("<</S/|D/D[3 3]>>").kind(), Kind::None);
    EXPECT_EQ(Marked("<</Subtype/Link/H/|Dest>>").kind(), Kind::None);
}

TEST(FindLink, LeavesToTheParserWhatItCannotKnow) {
    EXPECT_EQ(Marked("<</S 5 0 R/|D(a)>>").kind(), Kind::Unsure);
    EXPECT_EQ(Marked("<</S/GoTo/|D(a)/D(b)>>").kind(), Kind::Unsure);
    EXPECT_EQ(Marked("<</S/GoTo/|D(a)").kind(), Kind::Unsure);
}

TEST(FindLink, SaysHowMuchItHadToLookAt) {
    EXPECT_EQ(findLink("<</S/GoTo/D(a)>> more", 0, 11).looked, 16U);
}

}  // namespace
}  // namespace quillon::pdf
