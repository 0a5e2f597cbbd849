#include "merge/MergeWarnings.h"
#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/PdfFixture.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

TEST(MergeWarnings, AddsALineOnce) {
    MergeWarnings warnings;
    warnings.add({"a", "b"});
    warnings.add({"b", "c", "c"});
    EXPECT_EQ(warnings.lines(), (Lines{"a", "b", "c"}));
}

TEST(MergeWarnings, AnEntryThatDoesNotOpenIsNamedOnceHoweverOftenItIsTried) {
    const cacheData entry(QUrl::fromLocalFile(QStringLiteral("/files/a b.pdf")));
    MergeWarnings warnings;
    for (int i = 0; i < 3; ++i) warnings.noteInput(entry, nullptr);
    EXPECT_EQ(warnings.lines(), Lines{"/files/a b.pdf: does not exist"});
}

TEST(MergeWarnings, TwoEntriesOfAMissingFileAreTwoLines) {
    const cacheData first(QUrl::fromLocalFile(QStringLiteral("/a.pdf")));
    const cacheData second(QUrl::fromLocalFile(QStringLiteral("/a.pdf")));
    MergeWarnings warnings;
    warnings.noteInput(first, nullptr);
    warnings.noteInput(second, nullptr);
    EXPECT_EQ(warnings.lines().size(), 2U);
}

TEST(MergeWarnings, AFileThatIsNoEntryIsNamedOnce) {
    MergeWarnings warnings;
    for (int i = 0; i < 3; ++i) warnings.noteFile(QUrl::fromLocalFile(QStringLiteral("/pad.pdf")), nullptr);
    EXPECT_EQ(warnings.lines(), Lines{"/pad.pdf: does not exist"});
}

class MergeWarningsOfAJob : public MergeTest {};

TEST_F(MergeWarningsOfAJob, GoodInputsGiveNone) {
    add("A", 2);
    addPicture();
    run();
    EXPECT_EQ(job().warnings(), Lines{});
}

TEST_F(MergeWarningsOfAJob, NameEveryInputThatDoesNotOpen) {
    addMissing();
    add("A", 1);
    addFile(urlOf(dir_.write("broken.png", "no picture"))).setIsImage(true);
    run();
    EXPECT_EQ(job().warnings(), (Lines{dir_.file("missing.pdf") + ": does not exist",
                                       dir_.file("broken.png") + ": cannot be read as a picture"}));
}

TEST_F(MergeWarningsOfAJob, AFollowerThatIsTriedInEveryRoundCountsOnce) {
    add("A", 5, MergeMethodCross, QStringLiteral("1"));
    addMissing(MergeMethodCross, QStringLiteral("1"));
    add("B", 4, MergeMethodCross, QStringLiteral("1"));
    run();
    EXPECT_EQ(job().warnings(), Lines{dir_.file("missing.pdf") + ": does not exist"});
}

TEST_F(MergeWarningsOfAJob, NameAProtectedInput) {
    const std::string plain = dir_.write("plain.pdf", PdfFixture("P", 1).bytes());
    const QString locked = QString::fromStdString(dir_.file("locked.pdf"));
    const auto made = runProgram(QStringLiteral("qpdf"),
                                 {QStringLiteral("--encrypt"), QStringLiteral("u"), QStringLiteral("o"),
                                  QStringLiteral("256"), QStringLiteral("--"), QString::fromStdString(plain), locked});
    ASSERT_EQ(made.exitCode, 0);
    add("A", 1);
    addFile(QUrl::fromLocalFile(locked));
    run();
    ASSERT_EQ(job().warnings().size(), 1U);
    EXPECT_NE(job().warnings()[0].find("is protected"), std::string::npos);
}

TEST_F(MergeWarningsOfAJob, NameAPaddingFileThatDoesNotOpenOnce) {
    settings_.addPage = true;
    settings_.addedPage = urlOf(dir_.file("pad.pdf"));
    add("A", 1);
    add("B", 2);
    add("C", 2);
    run();
    EXPECT_EQ(job().warnings(), Lines{dir_.file("pad.pdf") + ": does not exist"});
}

}  // namespace
}  // namespace quillon::test
