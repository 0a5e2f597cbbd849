#include "tests/support/ExternalReader.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/TempDir.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace quillon::test {
namespace {

using Strings = std::vector<std::string>;

TEST(PdfFixture, MakesAFileThatOtherReadersFindNothingWrongWith) {
    const TempDir dir;
    const auto file = dir.write("a.pdf", PdfFixture("A", 3).link(0, 2).bookmark("last", 2).info("Title", "T").bytes());
    EXPECT_EQ(qpdfProblems(file), "");
}

TEST(PdfFixture, PagesShowTheirMarks) {
    const TempDir dir;
    const auto file = dir.write("a.pdf", PdfFixture("A", 2).page("cover").bytes());
    EXPECT_EQ(pageMarks(file), (Strings{"A1", "A2", "cover"}));
    EXPECT_EQ(pageCount(file), 3);
}

TEST(PdfFixture, PagesHaveTheirSizes) {
    const TempDir dir;
    const auto file = dir.write("a.pdf", PdfFixture("A", 2).size(1, 300, 400).bytes());
    EXPECT_EQ(pageSizes(file), (Strings{"612x792", "300x400"}));
}

TEST(PdfFixture, BookmarksAndInformationAreThere) {
    const TempDir dir;
    const auto file =
        dir.write("a.pdf", PdfFixture("A", 2).bookmark("one", 0).bookmark("two", 1).info("Author", "Me").bytes());
    const auto lines = outlineLines(file);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NE(lines[0].find("one"), std::string::npos);
    EXPECT_NE(lines[1].find("two"), std::string::npos);
    EXPECT_EQ(documentInfo(file, "Author"), "Me");
    EXPECT_EQ(documentInfo(file, "Title"), "");
}

TEST(ExternalReader, SaysWhatIsWrongWithADamagedFile) {
    const TempDir dir;
    const auto whole = PdfFixture("A", 2).bytes();
    const auto file = dir.write("a.pdf", std::string_view(whole).substr(0, whole.size() / 2));
    EXPECT_NE(qpdfProblems(file), "");
    EXPECT_THROW((void)pageMarks(dir.file("missing.pdf")), std::runtime_error);
}

TEST(ExternalReader, AProgramThatDoesNotEndIsStopped) {
    EXPECT_EQ(runProgram(QStringLiteral("sleep"), {QStringLiteral("100")}, 1).exitCode, -1);
}

TEST(ExternalReader, DescribesAFileAsJson) {
    const TempDir dir;
    const auto file = dir.write("a.pdf", PdfFixture("A", 2).bytes());
    EXPECT_EQ(qpdfJson(file).object().value(QLatin1String("pages")).toArray().size(), 2);
}

TEST(TempDir, IsRemovedWithWhatIsInIt) {
    std::filesystem::path path;
    {
        const TempDir dir;
        path = dir.path();
        (void)dir.write("file", "bytes");
        ASSERT_TRUE(std::filesystem::exists(path / "file"));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace quillon::test
