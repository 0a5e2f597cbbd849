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

/// Looks like all others of its kind.
std::string shortData(char middle) {
    return std::string(100, 'q') + middle + std::string(100, 'q');
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

// Hashes with a seed that is added to the input would take them for one in about half of the indexes.
TEST(StreamIndex, ALengthCannotBeMadeUpForByTheDictionary) {
    const test::TempDir dir;
    const std::string data(80'256, ' ');
    const auto file = InputFile::open(dir.write("a", data));
    for (const std::uint64_t length : {5'000U, 80'000U}) {
        const Ranges part{{0, length}};
        const Ranges more{{0, length + 256}};
        const std::string_view partData = std::string_view(data).substr(0, length);
        const std::string_view moreData = std::string_view(data).substr(0, length + 256);
        for (int i = 0; i < 50; ++i) {
            StreamIndex index;
            index.add(inBoth("/ABCDEFG(ABCDEF)", partData, file, part), 3);
            ASSERT_FALSE(index.findOrAdd(inBoth("/@BCDEFG(@BCDEF)", moreData, file, more), 4)) << length;
            StreamIndex reverse;
            reverse.add(inBoth("/@BCDEFG(@BCDEF)", moreData, file, more), 3);
            ASSERT_FALSE(reverse.findOrAdd(inBoth("/ABCDEFG(ABCDEF)", partData, file, part), 4)) << length;
        }
    }
}

TEST(StreamIndex, ABeginningIsNotTakenForTheWhole) {
    const test::TempDir dir;
    for (const std::size_t size : {std::size_t{300}, longLength + 300}) {
        const std::string data(size, 'q');
        const auto file = InputFile::open(dir.write("a", data));
        const Ranges whole{{0, size}};
        const Ranges beginning{{0, size - 1}};
        const std::string_view less = std::string_view(data).substr(1);
        StreamIndex index;
        index.add(inBoth("/A", data, file, whole), 3);
        EXPECT_FALSE(index.findOrAdd(inBoth("/A", less, file, beginning), 4));
        StreamIndex reverse;
        reverse.add(inBoth("/A", less, file, beginning), 3);
        EXPECT_FALSE(reverse.findOrAdd(inBoth("/A", data, file, whole), 4));
    }
}

TEST(StreamIndex, DataInMemoryAndInRangesOfAFileAreEqual) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", "xxda--tayy"));
    const Ranges ranges{{2, 2}, {6, 2}};
    StreamIndex index;
    index.add(inBoth("/A", "data", file, ranges), 3);
    EXPECT_EQ(index.findOrAdd(inMemory("/A", "data"), 4), 3U);
    EXPECT_EQ(index.findOrAdd(inBoth("/A", "data", file, ranges), 5), 3U);
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
    StreamIndex index;
    std::vector<std::shared_ptr<InputFile>> files;
    const Ranges whole{{0, 201}};
    for (std::uint32_t i = 0; i < 4; ++i) {
        const char middle = static_cast<char>('a' + i);
        files.push_back(InputFile::open(dir.write(std::string(1, middle), shortData(middle))));
        EXPECT_FALSE(index.findOrAdd(inBoth("/A", shortData(middle), files.back(), whole), 3 + i)) << middle;
    }
    for (std::uint32_t i = 0; i < 4; ++i) {
        const char middle = static_cast<char>('a' + i);
        EXPECT_EQ(index.findOrAdd(inMemory("/A", shortData(middle)), 9), 3 + i) << middle;
        EXPECT_EQ(index.findOrAdd(inBoth("/A", shortData(middle), files[i], whole), 9), 3 + i) << middle;
    }
    EXPECT_FALSE(index.findOrAdd(inMemory("/A", shortData('x')), 9));
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

TEST(StreamIndex, OfAFileThatHasBecomeShorterNothingIsTakenForEqual) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", longData('a') + longData('b')));
    const Ranges first{{0, longLength}};
    const Ranges second{{longLength, longLength}};
    StreamIndex index;
    index.add(inFile("/A", file, first), 3);
    std::filesystem::resize_file(dir.file("a"), 0);
    EXPECT_FALSE(index.findOrAdd(inFile("/A", file, second), 4));
}

TEST(StreamIndex, WhatIsFoundByItsHashIsComparedToo) {
    const test::TempDir dir;
    const Ranges whole{{0, 201}};
    std::vector<std::shared_ptr<InputFile>> files;
    StreamIndex index;
    for (const char middle : {'a', 'b', 'c'}) {
        files.push_back(InputFile::open(dir.write(std::string(1, middle), shortData(middle))));
        index.add(inBoth("/A", shortData(middle), files.back(), whole), static_cast<std::uint32_t>(middle));
    }
    std::filesystem::resize_file(dir.file("b"), 2);
    EXPECT_FALSE(index.findOrAdd(inMemory("/A", shortData('b')), 9));
    EXPECT_EQ(index.findOrAdd(inMemory("/A", shortData('c')), 9), static_cast<std::uint32_t>('c'));
}

TEST(StreamIndex, NothingIsFoundOnceItIsCleared) {
    const test::TempDir dir;
    const auto file = InputFile::open(dir.write("a", "data"));
    const Ranges whole{{0, 4}};
    StreamIndex index;
    index.add(inBoth("/A", "data", file, whole), 3);
    index.add(inMemory("/B", "data"), 4);
    index.clear();
    EXPECT_FALSE(index.findOrAdd(inBoth("/A", "data", file, whole), 5));
    EXPECT_FALSE(index.findOrAdd(inMemory("/B", "data"), 6));
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
