#include "pdf/read/SourcePreloader.h"
#include "pdf/read/SourceRegistry.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/PdfFixture.h"

#include <string>
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
        for (std::size_t i = 0; i < paths.size(); i += 2) EXPECT_FALSE(isOpen(paths[i])) << i;  // left to the owner
    }
    for (const std::string& path : paths) EXPECT_FALSE(isOpen(path));
}

}  // namespace
}  // namespace quillon::pdf
