#include "pdf/read/StreamText.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon::pdf {
namespace {

/// A stream near the end of a block, with blanks in its dictionary.
std::string streamNearTheEnd(std::size_t blanks, std::string_view behindKeyword) {
    std::string file(BlockCache::blockSize - 100, '%');
    file += "1 0 obj\n<</Length 4" + std::string(blanks, ' ') + ">>stream";
    file += behindKeyword;
    file += "data\nendstream\nendobj\n";
    return file + std::string(1000, '%');
}

TEST(StreamText, IsReadWholeWhereverAViewOfTheFileEnds) {
    const test::TempDir dir;
    for (const std::string_view behindKeyword :
         {"\n", "\r\n", "   \r\n", "                                        \r\n"}) {
        for (std::size_t blanks = 450; blanks < 550; ++blanks) {
            BlockCache file(InputFile::open(dir.write("file", streamNearTheEnd(blanks, behindKeyword))));
            const auto stream = readStreamAt(file, BlockCache::blockSize - 100);
            ASSERT_TRUE(stream) << blanks;
            ASSERT_EQ(stream->reference, (Reference{1, 0}));
            ASSERT_EQ(stream->data, "data") << blanks;
        }
    }
}

TEST(StreamText, IsTheSameWhoeverReadsIt) {
    const test::TempDir dir;
    constexpr std::size_t smallBlock = 4096;
    const std::string begin = "1 0 obj\n<</Length 35>>stream\n";
    const std::string data = "(a endstream b) (and nothing more) ";
    std::size_t whole = 0;
    for (const std::size_t blanks : {0U, 1U, 22U, 23U, 24U, 31U, 32U, 33U, 100U, 1014U, 1015U, 1016U, 2000U, 20'000U}) {
        for (std::size_t end = smallBlock - 40; end < smallBlock + 10; ++end) {
            std::string text(end - data.size() - begin.size(), '%');
            const std::size_t place = text.size();
            text += begin + data + std::string(blanks + 1, ' ') + "endstream\nendobj\n";
            text.append(1000, '%');
            const std::string path = dir.write("file", text);
            BlockCache usual(InputFile::open(path));
            BlockCache small(InputFile::open(path), smallBlock);
            const auto one = readStreamAt(usual, place);
            const auto other = readStreamAt(small, place);
            ASSERT_TRUE(one && other);
            ASSERT_EQ(one->data, other->data) << blanks << " blanks, data that ends at " << end;
            if (one->data == data) ++whole;
        }
    }
    EXPECT_EQ(whole, 13 * 50U);  // all but those with the most blanks
}

TEST(StreamText, ADictionaryMayBeLong) {
    const test::TempDir dir;
    BlockCache file(InputFile::open(dir.write("file", streamNearTheEnd(15'000, "\n"))));
    const auto stream = readStreamAt(file, BlockCache::blockSize - 100);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->data, "data");
}

TEST(StreamText, AStreamMayStandAtTheEndOfTheFile) {
    const test::TempDir dir;
    BlockCache file(InputFile::open(dir.write("file", "1 0 obj\n<</Length 3>>stream\nabc\nendstream")));
    const auto stream = readStreamAt(file, 0);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->data, "abc");
    EXPECT_FALSE(readStreamAt(file, 3));
}

}  // namespace
}  // namespace quillon::pdf
