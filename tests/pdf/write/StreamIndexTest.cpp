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

StreamContent inMemory(std::string_view dictionary, std::string_view data) {
    return {.dictionary = dictionary, .data = data};
}

StreamContent inFile(std::string_view dictionary, const std::shared_ptr<InputFile>& file, const Ranges& ranges) {
    return {.dictionary = dictionary, .file = file.get(), .ranges = ranges};
}

StreamContent inBoth(std::string_view dictionary, std::string_view data, const std::shared_ptr<InputFile>& file,
                     const Ranges& ranges) {
    return {.dictionary = dictionary, .data = data, .file = file.get(), .ranges = ranges};
}

std::string longData(char last) {
    return std::string(StreamIndex::longStream, 'q') + last;
}

constexpr std::uint64_t longLength = StreamIndex::longStream + 1;

TEST(StreamIndex, FindsAnEqualStreamOnly) {
    StreamIndex index;
    index.add(inMemory("/Type/X", "data"), 7);
    EXPECT_EQ(index.findOrAdd(inMemory("/Type/X", "data"), 8), 7U);
    EXPECT_FALSE(index.findOrAdd(inMemory("/Type/Y", "data"), 9));
    EXPECT_FALSE(index.findOrAdd(inMemory("/Type/X", "date"), 10));
    EXPECT_FALSE(index.findOrAdd(inMemory("/Type/X", ""), 11));
    EXPECT_EQ(index.findOrAdd(inMemory("/Type/X", "date"), 12), 10U);
}

TEST(StreamIndex, TheBorderBetweenDictionaryAndDataCounts) {
    StreamIndex index;
    index.add(inMemory("/A", "bc"), 7);
    EXPECT_FALSE(index.findOrAdd(inMemory("/Ab", "c"), 8));
}

TEST(StreamIndex, DataInMemoryAndInAFileAreEqual) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", "xxdatayy"));
    const Ranges ranges{{2, 2}, {4, 2}};
    StreamIndex index;
    index.add(inBoth("/A", "data", file, ranges), 3);
    EXPECT_EQ(index.findOrAdd(inMemory("/A", "data"), 4), 3U);
}

TEST(StreamIndex, LongDataInMemoryAndInAFileAreEqual) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", longData('a')));
    const Ranges whole{{0, longLength}};
    StreamIndex index;
    index.add(inFile("/A", file, whole), 3);
    index.add(inMemory("/B", longData('a')), 4);
    EXPECT_EQ(index.findOrAdd(inMemory("/A", longData('a')), 5), 3U);
    EXPECT_EQ(index.findOrAdd(inFile("/B", file, whole), 6), 4U);
    EXPECT_FALSE(index.findOrAdd(inMemory("/A", longData('b')), 7));
}

TEST(StreamIndex, LongStreamsOfOneLengthAreToldApart) {
    const test::TempDir dir;
    const auto a = InputFile::open(dir.write("a", longData('a')));
    const auto b = InputFile::open(dir.write("b", longData('b')));
    const auto c = InputFile::open(dir.write("c", longData('c')));
    const Ranges whole{{0, longLength}};
    StreamIndex index;
    EXPECT_FALSE(index.findOrAdd(inFile("/A", a, whole), 3));
    EXPECT_FALSE(index.findOrAdd(inFile("/A", b, whole), 4));
    EXPECT_FALSE(index.findOrAdd(inFile("/B", a, whole), 5));
    EXPECT_EQ(index.findOrAdd(inFile("/A", a, whole), 6), 3U);
    EXPECT_EQ(index.findOrAdd(inFile("/A", b, whole), 7), 4U);
    EXPECT_FALSE(index.findOrAdd(inFile("/A", c, whole), 8));
    EXPECT_EQ(index.findOrAdd(inFile("/A", c, whole), 9), 8U);
}

TEST(StreamIndex, ShortStreamsThatLookAlikeAreToldApart) {
    const test::TempDir dir;
    const auto data = [](char middle) { return std::string(100, 'q') + middle + std::string(100, 'q'); };
    StreamIndex index;
    std::vector<std::shared_ptr<InputFile>> files;
    const Ranges whole{{0, 201}};
    for (std::uint32_t i = 0; i < 4; ++i) {
        const char middle = static_cast<char>('a' + i);
        files.push_back(InputFile::open(dir.write(std::string(1, middle), data(middle))));
        EXPECT_FALSE(index.findOrAdd(inBoth("/A", data(middle), files.back(), whole), 3 + i)) << middle;
    }
    for (std::uint32_t i = 0; i < 4; ++i) {
        const char middle = static_cast<char>('a' + i);
        EXPECT_EQ(index.findOrAdd(inMemory("/A", data(middle)), 9), 3 + i) << middle;
        EXPECT_EQ(index.findOrAdd(inBoth("/A", data(middle), files[i], whole), 9), 3 + i) << middle;
    }
    EXPECT_FALSE(index.findOrAdd(inMemory("/A", data('x')), 9));
}

TEST(StreamIndex, EqualBytesOfDifferentFilesAreFoundHoweverTheyAreCut) {
    const test::TempDir dir;
    const std::string data(700'000, 'q');
    const auto a = InputFile::open(dir.write("a", data));
    const auto b = InputFile::open(dir.write("b", "12" + data));
    const Ranges inA{{0, 700'000}};
    const Ranges inB{{2, 300'001}, {300'003, 399'999}};
    {
        StreamIndex index;
        index.add(inFile("/A", a, inA), 3);
        EXPECT_EQ(index.findOrAdd(inFile("/A", b, inB), 4), 3U);
    }
    StreamIndex index;
    index.add(inFile("/A", b, inB), 3);
    EXPECT_EQ(index.findOrAdd(inFile("/A", a, inA), 4), 3U);
}

TEST(StreamIndex, BytesThatHaveChangedSinceAreNotTakenForEqual) {
    const test::TempDir dir;
    for (const std::string& data : {std::string("data"), longData('a')}) {
        const auto a = InputFile::open(dir.write("a", data));
        const auto b = InputFile::open(dir.write("b", data));
        const Ranges whole{{0, data.size()}};
        StreamIndex index;
        index.add(inBoth("/A", data, a, whole), 3);
        std::filesystem::resize_file(dir.file("a"), 2);
        EXPECT_FALSE(index.findOrAdd(inBoth("/A", data, b, whole), 4));
    }
}

TEST(StreamIndex, DecipheredDataIsEqualToTheSameInTheClear) {
    const test::TempDir dir;
    const std::string plain = longData('a');
    const StreamKey key{Cipher::Rc4, "12345"};
    std::string enciphered = plain;
    decryptStream(key, enciphered);
    const auto clear = InputFile::open(dir.write("clear", plain));
    const auto other = InputFile::open(dir.write("other", longData('b')));
    const Ranges whole{{0, longLength}};
    DecryptingReader reader(InputFile::open(dir.write("enciphered", enciphered)), 0, longLength, key);
    const StreamContent deciphered{.dictionary = "/A", .reader = &reader};
    {
        StreamIndex index;
        EXPECT_FALSE(index.findOrAdd(inFile("/A", other, whole), 3));
        EXPECT_FALSE(index.findOrAdd(inFile("/A", clear, whole), 4));
        EXPECT_EQ(index.findOrAdd(deciphered, 5), 4U);
        EXPECT_EQ(reader.next().substr(0, 3), plain.substr(0, 3));
        reader.rewind();
    }
    StreamIndex index;
    EXPECT_FALSE(index.findOrAdd(deciphered, 3));
    EXPECT_EQ(index.findOrAdd(deciphered, 4), 3U);
    EXPECT_EQ(index.findOrAdd(inFile("/A", clear, whole), 5), 3U);
    EXPECT_FALSE(index.findOrAdd(inFile("/A", other, whole), 6));
}

TEST(StreamIndex, OfEqualStreamsTheFirstIsFound) {
    StreamIndex index;
    index.add(inMemory("", "data"), 3);
    index.add(inMemory("", "data"), 9);
    EXPECT_EQ(index.findOrAdd(inMemory("", "data"), 10), 3U);
}

}  // namespace
}  // namespace quillon::pdf
