#include "pdf/write/StreamIndex.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {
namespace {

using Ranges = std::vector<FileRange>;

TEST(StreamIndex, FindsAnEqualStreamOnly) {
    StreamIndex index;
    index.add(index.key("/Type/X", "data"), 7, nullptr, {});
    EXPECT_EQ(index.find(index.key("/Type/X", "data"), std::string_view("data")), 7U);
    EXPECT_FALSE(index.find(index.key("/Type/Y", "data"), std::string_view("data")));
    EXPECT_FALSE(index.find(index.key("/Type/X", "date"), std::string_view("date")));
    EXPECT_FALSE(index.find(index.key("/Type/X", ""), std::string_view("")));
}

TEST(StreamIndex, TheBorderBetweenDictionaryAndDataCounts) {
    StreamIndex index;
    index.add(index.key("/A", "bc"), 7, nullptr, {});
    EXPECT_FALSE(index.find(index.key("/Ab", "c"), std::string_view("c")));
}

TEST(StreamIndex, DataInMemoryAndInAFileAreEqual) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", "xxdatayy"));
    const Ranges ranges{{2, 2}, {4, 2}};
    StreamIndex index;
    index.add(index.key("/A", *file, ranges), 3, file.get(), ranges);
    EXPECT_EQ(index.find(index.key("/A", "data"), std::string_view("data")), 3U);
}

TEST(StreamIndex, EqualBytesOfDifferentFilesAreFoundHoweverTheyAreCut) {
    const test::TempDir dir;
    const std::string data(700'000, 'q');
    const auto a = InputFile::open(dir.write("a", data));
    const auto b = InputFile::open(dir.write("b", "12" + data));
    const Ranges inA{{0, 700'000}};
    const Ranges inB{{2, 300'001}, {300'003, 399'999}};
    StreamIndex index;
    index.add(index.key("/A", *a, inA), 3, a.get(), inA);
    EXPECT_EQ(index.find(index.key("/A", *b, inB), *b, inB), 3U);
}

TEST(StreamIndex, BytesThatHaveChangedSinceAreNotTakenForEqual) {
    const test::TempDir dir;
    const auto a = InputFile::open(dir.write("a", "data"));
    const auto b = InputFile::open(dir.write("b", "data"));
    const Ranges ranges{{0, 4}};
    StreamIndex index;
    index.add(index.key("/A", *a, ranges), 3, a.get(), ranges);
    std::filesystem::resize_file(dir.file("a"), 2);
    EXPECT_FALSE(index.find(index.key("/A", *b, ranges), *b, ranges));
}

TEST(StreamIndex, OfEqualStreamsTheFirstIsFound) {
    StreamIndex index;
    index.add(index.key("", "data"), 3, nullptr, {});
    index.add(index.key("", "data"), 9, nullptr, {});
    EXPECT_EQ(index.find(index.key("", "data"), std::string_view("data")), 3U);
}

}  // namespace
}  // namespace quillon::pdf
