#include "pdf/io/BlockCache.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace quillon::pdf {
namespace {

class BlockCacheTest : public testing::Test {
protected:
    void make(std::size_t size) {
        std::mt19937 random(41);
        bytes.resize(size);
        for (char& c : bytes) c = static_cast<char>(random());
        path = dir.write("file", bytes);
        cache.emplace(InputFile::open(path));
    }

    test::TempDir dir;
    std::string path;
    std::string bytes;
    std::optional<BlockCache> cache;
};

constexpr std::size_t block = BlockCache::blockSize;

TEST_F(BlockCacheTest, GivesAtLeastWhatIsAskedFor) {
    make(5 * block + 100);
    for (const std::size_t offset : {std::size_t{0}, std::size_t{7}, block - 1, block, 2 * block - 10, 5 * block}) {
        for (const std::size_t wanted : {std::size_t{1}, std::size_t{50}, block, 2 * block + 5}) {
            const OwnedText view = cache->view(offset, wanted);
            EXPECT_GE(view.text.size(), std::min(wanted, bytes.size() - offset));
            EXPECT_EQ(view.text, std::string_view(bytes).substr(offset, view.text.size()));
        }
    }
}

TEST_F(BlockCacheTest, NothingStandsBehindTheEnd) {
    make(100);
    EXPECT_TRUE(cache->view(100, 10).text.empty());
    EXPECT_TRUE(cache->view(UINT64_MAX, 10).text.empty());
    std::string out = "x";
    EXPECT_EQ(cache->append(100, 10, out), 0U);
    EXPECT_EQ(cache->append(UINT64_MAX, 10, out), 0U);
    EXPECT_EQ(out, "x");
}

TEST_F(BlockCacheTest, AViewStaysValidHoweverManyBlocksFollow) {
    make((BlockCache::mostBlocks + 20) * block);
    std::vector<OwnedText> views;
    for (std::size_t i = 0; i < BlockCache::mostBlocks + 19; ++i) views.push_back(cache->view(i * block + 5, 100));
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < BlockCache::mostBlocks + 20; ++i) (void)cache->view(i * block, 10);
    }
    cache->clear();
    for (std::size_t i = 0; i < views.size(); ++i) {
        EXPECT_EQ(views[i].text.substr(0, 100), std::string_view(bytes).substr(i * block + 5, 100));
    }
}

TEST_F(BlockCacheTest, AViewStaysValidWhenAnotherCacheTakesTheBlocks) {
    make(8 * block);
    const OwnedText view = cache->view(3 * block + 5, 100);
    for (std::size_t i = 0; i < 8; ++i) (void)cache->view(i * block, 10);
    cache.reset();
    BlockCache other(InputFile::open(dir.write("other", std::string(BlockCache::mostBlocks * block, 'x'))));
    for (std::size_t i = 0; i < BlockCache::mostBlocks; ++i) EXPECT_EQ(other.view(i * block, 10).text.front(), 'x');
    EXPECT_EQ(view.text.substr(0, 100), std::string_view(bytes).substr(3 * block + 5, 100));
}

TEST_F(BlockCacheTest, AViewAcrossBlocksStaysValid) {
    make((BlockCache::mostBlocks + 4) * block);
    const OwnedText view = cache->view(block - 50, 100);
    for (std::size_t i = 0; i < BlockCache::mostBlocks + 4; ++i) (void)cache->view(i * block, 10);
    EXPECT_EQ(view.text.substr(0, 100), std::string_view(bytes).substr(block - 50, 100));
}

TEST_F(BlockCacheTest, AppendsAnyRange) {
    make(4 * block + 1);
    std::mt19937 random(43);
    for (int round = 0; round < 200; ++round) {
        const std::size_t offset = random() % (bytes.size() + 10);
        const std::size_t length = random() % (2 * block);
        std::string out = "before";
        const std::size_t got = cache->append(offset, length, out);
        EXPECT_EQ(out.substr(6), offset < bytes.size() ? bytes.substr(offset, length) : "");
        EXPECT_EQ(got, out.size() - 6);
    }
}

TEST_F(BlockCacheTest, SmallBlocksGiveTheSame) {
    constexpr std::size_t smallBlock = 1000;
    make(2 * BlockCache::mostBlocks * smallBlock);
    // Blocks of the usual size go to the next cache of that size.
    for (std::size_t i = 0; i < 4; ++i) (void)cache->view(i * block, 1);
    cache.reset();
    BlockCache small(InputFile::open(path), smallBlock);
    std::mt19937 random(53);
    for (int round = 0; round < 400; ++round) {
        const std::size_t offset = random() % bytes.size();
        const std::size_t wanted = 1 + random() % 3000;
        const OwnedText view = small.view(offset, wanted);
        EXPECT_GE(view.text.size(), std::min(wanted, bytes.size() - offset));
        EXPECT_EQ(view.text, std::string_view(bytes).substr(offset, view.text.size()));
        std::string out;
        small.append(offset, wanted, out);
        EXPECT_EQ(out, bytes.substr(offset, wanted));
    }
    EXPECT_EQ(small.memory(), BlockCache::mostBlocks * smallBlock);
    small.clear();
    small.readWhole();
    EXPECT_EQ(small.memory(), bytes.size());
    EXPECT_EQ(small.view(3, 5000).text.substr(0, 5000), std::string_view(bytes).substr(3, 5000));
    small.clear();
    // Small ones would be too small for it.
    BlockCache usual(InputFile::open(path));
    for (std::size_t i = 0; i < 3; ++i) {
        const OwnedText view = usual.view(i * block, block);
        EXPECT_EQ(view.text, std::string_view(bytes).substr(i * block, block));
    }
}

TEST_F(BlockCacheTest, AFileThatBecameShorterGivesShorterViews) {
    make(3 * block);
    std::filesystem::resize_file(path, block + 10);
    EXPECT_EQ(cache->view(block, 100).text, std::string_view(bytes).substr(block, 10));
    EXPECT_TRUE(cache->view(2 * block, 100).text.empty());
    std::string out;
    EXPECT_EQ(cache->append(block - 10, 100, out), 20U);
    EXPECT_EQ(out, bytes.substr(block - 10, 20));
}

TEST_F(BlockCacheTest, AFileReadAsAWholeGivesTheSameWithoutBeingAskedAgain) {
    make(5 * block + 100);
    BlockCache whole(InputFile::open(path));
    const OwnedText before = whole.view(block + 7, 20);
    whole.readWhole();
    EXPECT_EQ(whole.memory(), bytes.size());
    std::mt19937 random(47);
    std::vector<std::pair<std::size_t, std::size_t>> asked{{bytes.size(), 1}, {bytes.size() + 9, 1}};
    for (int i = 0; i < 300; ++i) asked.emplace_back(random() % bytes.size(), 1 + random() % (2 * block));
    std::vector<std::string> views;
    std::vector<std::string> appended;
    for (const auto& [offset, wanted] : asked) {
        views.emplace_back(cache->view(offset, wanted).text);
        cache->append(offset, wanted, appended.emplace_back());
    }
    std::filesystem::resize_file(path, 0);
    for (std::size_t i = 0; i < asked.size(); ++i) {
        EXPECT_EQ(whole.view(asked[i].first, asked[i].second).text, views[i]);
        std::string out;
        EXPECT_EQ(whole.append(asked[i].first, asked[i].second, out), appended[i].size());
        EXPECT_EQ(out, appended[i]);
    }
    const OwnedText held = whole.view(3, 20);
    whole.clear();
    EXPECT_EQ(whole.memory(), 0U);
    EXPECT_EQ(held.text.substr(0, 20), bytes.substr(3, 20));
    EXPECT_EQ(before.text.substr(0, 20), bytes.substr(block + 7, 20));
}

TEST_F(BlockCacheTest, AWholeFileThatBecameShorterGivesShorterViews) {
    make(3 * block);
    std::filesystem::resize_file(path, block + 10);
    cache->readWhole();
    EXPECT_EQ(cache->view(block, 100).text, std::string_view(bytes).substr(block, 10));
    EXPECT_TRUE(cache->view(2 * block, 100).text.empty());
    std::string out;
    EXPECT_EQ(cache->append(2 * block, 100, out), 0U);
    EXPECT_EQ(cache->append(block - 10, 100, out), 20U);
    EXPECT_EQ(out, bytes.substr(block - 10, 20));
}

TEST_F(BlockCacheTest, OnlySmallFilesAreReadAsAWhole) {
    make(BlockCache::mostBlocks * block + 1);
    cache->readWhole();
    EXPECT_EQ(cache->memory(), 0U);
    EXPECT_EQ(cache->view(5, 10).text.substr(0, 10), bytes.substr(5, 10));
}

}  // namespace
}  // namespace quillon::pdf
