#include "tests/filelist/FileListTest.h"

#include <filesystem>

using namespace quillon;

namespace {

using FileListCells = test::FileListTest;

TEST_F(FileListCells, TheNameIsShownWithoutItsLastEnding) {
    list_.addFiles({pdf("report.final.pdf"), pdf("archive.tar.pdf"), pdf("bare"), pdf(".hidden")});
    EXPECT_EQ(shown("FileName", 0), QStringLiteral("report.final"));
    EXPECT_EQ(shown("FileName", 1), QStringLiteral("archive.tar"));
    EXPECT_EQ(shown("FileName", 2), QStringLiteral("bare"));
    EXPECT_EQ(shown("FileName", 3), QStringLiteral(".hidden"));
}

TEST_F(FileListCells, TheToolTipIsTheWholePath) {
    list_.addFiles({pdf("a b.pdf")});
    EXPECT_EQ(list_.toolTipForTableColumn(QStringLiteral("FileName"), 0), QString::fromStdString(dir_.file("a b.pdf")));
}

TEST_F(FileListCells, TheSizeIsInKibibytesRoundedDown) {
    list_.addFiles(
        {write("small.pdf", "%PDF" + std::string(1019, ' ')), write("two.pdf", "%PDF" + std::string(2044, ' '))});
    EXPECT_EQ(shown("Size", 0), QStringLiteral("0"));
    EXPECT_EQ(shown("Size", 1), QStringLiteral("2"));
    EXPECT_EQ(entry(1).fileSize(), 2);
}

TEST_F(FileListCells, AKnownSizeIsNotMeasuredAgain) {
    list_.addFiles({pdf("a.pdf")});
    entry(0).setFileSize(77);
    EXPECT_EQ(shown("Size", 0), QStringLiteral("77"));
}

TEST_F(FileListCells, EveryMethodHasItsText) {
    list_.addFiles({pdf("a.pdf")});
    const std::vector<std::pair<std::int32_t, QString>> texts{
        {MergeMethodWhole, QStringLiteral("Whole")},
        {MergeMethodPart, QStringLiteral("Part : 1-3,5")},
        {MergeMethodCross, QStringLiteral("Cross with steps: 1-3,5")},
        {MergeMethodCrossReverse, QStringLiteral("Cross reverse with steps: 1-3,5")},
        {MergeMethodRepeat, QStringLiteral("Repeat")}};
    for (const auto& [code, text] : texts) {
        list_.updateMethodColumn(0, code, QStringLiteral("1-3,5"));
        EXPECT_EQ(shown("MergeMethod", 0), text);
    }
}

TEST_F(FileListCells, AMethodOutsideTheCodesShowsWhatAnUnknownColumnDoes) {
    list_.addFiles({pdf("a.pdf"), picture("b.png")});
    for (const std::int32_t code : {5, -1}) {
        entry(0).setMergeMethod(code);
        entry(1).setMergeMethod(code);
        EXPECT_EQ(shown("MergeMethod", 0), QString());
        EXPECT_EQ(shown("MergeMethod", 1), QStringLiteral("None"));
    }
}

TEST_F(FileListCells, AnImageShowsNoneButForNameSizeAndMethod) {
    list_.addFiles({picture("b.png")});
    EXPECT_EQ(shown("FileName", 0), QStringLiteral("b"));
    EXPECT_EQ(shown("Pages", 0), QStringLiteral("None"));
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
    EXPECT_EQ(shown("Anything", 0), QStringLiteral("None"));
    EXPECT_EQ(shown("MergeMethod", 0), QStringLiteral("Whole"));
    EXPECT_EQ(entry(0).pageCount(), -1);
}

TEST_F(FileListCells, AnUnknownColumnOfAPdfIsEmpty) {
    list_.addFiles({pdf("a.pdf")});
    EXPECT_EQ(shown("Anything", 0), QString());
}

TEST_F(FileListCells, PagesAreCountedOnceAndKept) {
    list_.addFiles({pdf("a.pdf", 7)});
    EXPECT_EQ(shown("Pages", 0), QStringLiteral("7"));
    std::filesystem::remove(dir_.file("a.pdf"));
    EXPECT_EQ(shown("Pages", 0), QStringLiteral("7"));
}

TEST_F(FileListCells, AFileThatDoesNotOpenHasNoPagesAndNeedsNoPassword) {
    list_.addFiles({write("broken.pdf", "%PDF and nothing else")});
    EXPECT_EQ(shown("Pages", 0), QStringLiteral("0"));
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
    EXPECT_EQ(entry(0).needPassword(), 0);
}

TEST_F(FileListCells, AFileThatVanishedShowsNothingOfIt) {
    list_.addFiles({pdf("a.pdf")});
    std::filesystem::remove(dir_.file("a.pdf"));
    EXPECT_EQ(shown("Size", 0), QStringLiteral("0"));
    EXPECT_EQ(shown("Pages", 0), QStringLiteral("0"));
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
}

TEST_F(FileListCells, APlainFileNeedsNoPassword) {
    list_.addFiles({pdf("a.pdf")});
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
    EXPECT_EQ(entry(0).needPassword(), 0);
    EXPECT_FALSE(list_.isEncrypt(0));
}

TEST_F(FileListCells, AProtectedFileNeedsOneOnceItsCellWasShown) {
    list_.addFiles({protectedPdf("a.pdf", QStringLiteral("user"), QStringLiteral("owner"))});
    EXPECT_FALSE(list_.isEncrypt(0));
    EXPECT_TRUE(list_.isAllDecrypt());
    EXPECT_EQ(shown("Password", 0), QStringLiteral("Need"));
    EXPECT_TRUE(list_.isEncrypt(0));
    EXPECT_FALSE(list_.isAllDecrypt());
    EXPECT_EQ(entry(0).needPassword(), 1);
}

TEST_F(FileListCells, AFileWithOnlyAnOwnerPasswordNeedsOneToo) {
    list_.addFiles({protectedPdf("a.pdf", QString(), QStringLiteral("owner"))});
    EXPECT_EQ(shown("Password", 0), QStringLiteral("Need"));
}

TEST_F(FileListCells, AnUnlockedFileShowsNone) {
    list_.addFiles({protectedPdf("a.pdf", QStringLiteral("user"), QStringLiteral("owner"))});
    EXPECT_EQ(shown("Password", 0), QStringLiteral("Need"));
    list_.updatePassowrdColumn(0, false);
    EXPECT_EQ(shown("Password", 0), QStringLiteral("None"));
    EXPECT_FALSE(list_.isEncrypt(0));
    list_.updatePassowrdColumn(0, true);
    EXPECT_EQ(shown("Password", 0), QStringLiteral("Need"));
}

}  // namespace
