// The bookmarks of whole merges, as another program reads them in the file that was written.

#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RichPdf.h"

#include <algorithm>

namespace quillon::test {
namespace {

using Strings = std::vector<std::string>;

class MergeBookmarks : public MergeTest {
protected:
    void SetUp() override {
        settings_.addBookmark = true;
        settings_.removeExtension = true;
    }

    /// Two pages, and a bookmark for each.
    PdfFixture withBookmarks(const std::string& name, const std::string& label) const {
        return PdfFixture(name, 2).bookmark(label + "1", 0).bookmark(label + "2", 1);
    }
    void addX(std::int32_t method = MergeMethodWhole) { addFile(write("X", withBookmarks("X", "x")), method); }
    void addY(std::int32_t method = MergeMethodWhole) { add("Y", 1, method); }

    void keep(bool keepOwn, bool useFileName) {
        settings_.keepOriginalBookmark = keepOwn;
        settings_.useFileName = useFileName;
    }

    /// Each node as `label@page`, pages counted from 1, with a blank in front for each level; a node that leads nowhere
    /// as its label alone.
    [[nodiscard]] Strings outline() {
        run();
        EXPECT_EQ(qpdfProblems(target()), "");
        Strings lines;
        for (const std::string& line : outlineLines(target())) {
            const auto open = line.find('"');
            const auto close = line.rfind('"');
            const auto tabs = std::count(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(open), '\t');
            std::string text(static_cast<std::size_t>(tabs - 1), ' ');
            text += line.substr(open + 1, close - open - 1);
            const auto page = line.find("#page=", close);
            if (page != std::string::npos) text += '@' + std::to_string(std::stoi(line.substr(page + 6)));
            lines.push_back(text);
        }
        return lines;
    }
};

TEST_F(MergeBookmarks, BothKindsWithTheInputWithBookmarksFirst) {
    keep(true, true);
    addX();
    addY();
    EXPECT_EQ(outline(), (Strings{"x1@1", "x2@2", "Y@3"}));
}

TEST_F(MergeBookmarks, OnlyOwnOnes) {
    keep(true, false);
    addX();
    addY();
    EXPECT_EQ(outline(), (Strings{"x1@1", "x2@2"}));
}

TEST_F(MergeBookmarks, OnlyFileNames) {
    keep(false, true);
    addX();
    addY();
    EXPECT_EQ(outline(), (Strings{"X@1", "Y@3"}));
}

TEST_F(MergeBookmarks, NeitherKindLeavesNoOutline) {
    keep(false, false);
    addX();
    addY();
    EXPECT_EQ(outline(), Strings());
}

TEST_F(MergeBookmarks, OwnOnesOfALaterInputHangBelowItsName) {
    keep(true, true);
    addY();
    addX();
    EXPECT_EQ(outline(), (Strings{"Y@1", "X", " x1@2", " x2@3"}));
}

TEST_F(MergeBookmarks, EveryFurtherInputAddsOneNode) {
    keep(true, true);
    addX();
    addY();
    addFile(write("Z", withBookmarks("Z", "z")));
    add("W", 2);
    EXPECT_EQ(outline(), (Strings{"x1@1", "x2@2", "Y@3", "Z", " z1@4", " z2@5", "W@6"}));
}

TEST_F(MergeBookmarks, SwitchedOffTheFirstInputKeepsItsOwn) {
    settings_.addBookmark = false;
    keep(true, true);
    addX();
    addY();
    EXPECT_EQ(outline(), (Strings{"x1@1", "x2@2"}));
}

TEST_F(MergeBookmarks, SwitchedOffALaterInputAddsNone) {
    settings_.addBookmark = false;
    addY();
    addX();
    EXPECT_EQ(outline(), Strings());
}

TEST_F(MergeBookmarks, AnInputListedTwiceLeadsToItsPagesBothTimes) {
    keep(true, true);
    const QUrl url = write("X", withBookmarks("X", "x"));
    addY();
    addFile(url);
    addFile(url);
    EXPECT_EQ(outline(), (Strings{"Y@1", "X", " x1@2", " x2@3", "X", " x1@4", " x2@5"}));
}

TEST_F(MergeBookmarks, PartsAndWeavesHaveNone) {
    keep(true, true);
    addX(MergeMethodPart);
    list_.back()->setValue(QStringLiteral("1-2"));
    addX(MergeMethodCross);
    list_.back()->setValue(QStringLiteral("1"));
    EXPECT_EQ(outline(), Strings());
}

TEST_F(MergeBookmarks, ARepeatThatComesFirstHasOneAndALaterOneHasNot) {
    keep(true, true);
    addY(MergeMethodRepeat);
    addX(MergeMethodRepeat);
    EXPECT_EQ(outline(), (Strings{"Y@1"}));
}

TEST_F(MergeBookmarks, PaddingMovesTheBookmarksBehindIt) {
    keep(true, true);
    settings_.addPage = true;
    settings_.addBlankPage = true;
    addY();
    addX();
    EXPECT_EQ(outline(), (Strings{"Y@1", "X", " x1@3", " x2@4"}));
}

TEST_F(MergeBookmarks, AnInputThatDoesNotOpenHasANodeThatLeadsNowhere) {
    keep(false, true);
    addY();
    addMissing();
    EXPECT_EQ(outline(), (Strings{"Y@1", "missing"}));
}

TEST_F(MergeBookmarks, EscapedNamesStayEscapedAndOthersAreReadable) {
    keep(false, true);
    add("Annual report", 1);
    add("\xC3\x9C"
        "bersicht",
        1);
    EXPECT_EQ(outline(), (Strings{"Annual%20report@1", "%C3%9Cbersicht@2"}));
}

TEST_F(MergeBookmarks, OneWhoseDestinationIsMissingKeepsItsAction) {
    keep(true, false);
    RawPdf pdf = beginPdf("/Outlines 30 0 R", {""});
    pdf.object(30, "<</First 31 0 R/Last 31 0 R/Count 1>>");
    pdf.object(31, "<</Title(t)/Parent 30 0 R/Dest 99 0 R/A<</S/URI/URI(http://example.org)>>>>");
    addY();
    addFile(urlOf(dir_.write("linked.pdf", pdf.table().bytes())));
    run();
    const JudgedPdf file(target());
    const QJsonObject root = file.dictionary(file.catalog().value(QStringLiteral("/Outlines")));
    const QJsonObject node = file.dictionary(root.value(QStringLiteral("/First")));
    EXPECT_EQ(file.dictionary(node.value(QStringLiteral("/A"))).value(QStringLiteral("/URI")).toString(),
              QStringLiteral("u:http://example.org"));
}

TEST_F(MergeBookmarks, ANodeShowsTheTopOfItsPage) {
    keep(false, true);
    addFile(write("tall", PdfFixture("T", 1).size(0, 300, 1000)));
    run();
    const JudgedPdf file(target());
    const QJsonObject root = file.dictionary(file.catalog().value(QStringLiteral("/Outlines")));
    const QJsonObject node = file.dictionary(root.value(QStringLiteral("/First")));
    EXPECT_EQ(node.value(QStringLiteral("/Dest")).toVariant().toStringList(),
              (QStringList{file.pages().front(), QStringLiteral("/XYZ"), QStringLiteral("0"), QStringLiteral("1000"),
                           QString()}));
}

}  // namespace
}  // namespace quillon::test
