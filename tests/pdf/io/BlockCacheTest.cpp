#include "pdf/io/BlockCache.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
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

TEST_F(BlockCacheTest, AFileThatBecameShorterGivesShorterViews) {
    make(3 * block);
    std::filesystem::resize_file(path, block + 10);
    EXPECT_EQ(cache->view(block, 100).text, std::string_view(bytes).substr(block, 10));
    EXPECT_TRUE(cache->view(2 * block, 100).text.empty());
    std::string out;
    EXPECT_EQ(cache->append(block - 10, 100, out), 20U);
    EXPECT_EQ(out, bytes.substr(block - 10, 20));
}

}  // namespace
}  // namespace quillon::pdf
