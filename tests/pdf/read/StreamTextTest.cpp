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
