#include "pdf/read/SourcePreloader.h"
#include "pdf/read/SourceRegistry.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/PdfFixture.h"

#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace quillon::pdf {
namespace {

class SourcePreloaderTest : public EngineTest {
protected:
    SourcePreloaderTest() {
        for (int i = 0; i < 50; ++i) {
            const std::string name = "input" + std::to_string(i) + ".pdf";
            paths.push_back(dir.write(name, test::PdfFixture("A", 1 + i % 3).bytes()));
        }
        paths[7].clear();  // no file is opened there
        paths[20] = dir.file("missing.pdf");
    }

    [[nodiscard]] SourcePreloader::PathAt pathAt() const {
        return [this](std::size_t index) { return paths[index]; };
    }

    static bool isOpen(const std::string& path) {
        const auto identity = InputFile::identityOf(path);
        return identity && SourceRegistry::instance().find(*identity);
    }

    std::vector<std::string> paths;
    const std::thread::id owner = std::this_thread::get_id();
};

TEST_F(SourcePreloaderTest, TheOwnerFindsEveryFileAsIfItWereAlone) {
    SourcePreloader preloader(paths.size(), pathAt());
    for (std::size_t i = 0; i < paths.size(); ++i) {
        preloader.reached(i);
        const auto source = Source::open(paths[i]);
        ASSERT_EQ(source == nullptr, i == 7 || i == 20) << i;
        if (!source) continue;
        EXPECT_EQ(source->pageCount(), 1 + i % 3);
    }
}

TEST_F(SourcePreloaderTest, FilesThatWerePassedAreLetGo) {
    {
        SourcePreloader preloader(paths.size(), pathAt());
        for (std::size_t i = 0; i < paths.size(); ++i) preloader.reached(i);
        for (std::size_t i = 0; i + 1 < paths.size(); ++i) EXPECT_FALSE(isOpen(paths[i])) << i;
    }
    for (const std::string& path : paths) EXPECT_FALSE(isOpen(path));
}

TEST_F(SourcePreloaderTest, WhileAFileIsOpenedTheOwnerOpensTheNext) {
    std::promise<void> begun;
    std::promise<void> helped;
    std::atomic<bool> inTime = false;
    SourcePreloader preloader(paths.size(), [&](std::size_t index) {
        // The thread stays with the file at 1 until the owner has begun with one behind it.
        if (index == 1 && std::this_thread::get_id() != owner) {
            begun.set_value();
            inTime = helped.get_future().wait_for(std::chrono::seconds(20)) == std::future_status::ready;
        }
        if (index == 2 && std::this_thread::get_id() == owner) helped.set_value();
        return paths[index];
    });
    begun.get_future().wait();
    preloader.reached(1);
    EXPECT_TRUE(inTime);
    EXPECT_TRUE(isOpen(paths[1]));
    EXPECT_TRUE(isOpen(paths[2]));
}

TEST_F(SourcePreloaderTest, OnlySoManyFilesAreOpenedAhead) {
    std::atomic<std::size_t> last = 0;
    SourcePreloader preloader(paths.size(), [&](std::size_t index) {
        if (index > last && std::this_thread::get_id() != owner) last = index;
        return paths[index];
    });
    preloader.reached(0);
    constexpr std::size_t most = 16;
    for (int wait = 0; last < most && wait < 2000; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(last, most);
}

}  // namespace
}  // namespace quillon::pdf
