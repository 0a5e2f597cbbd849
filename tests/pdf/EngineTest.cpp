#include "tests/pdf/EngineTest.h"

#include "tests/support/ExternalReader.h"
#include "tests/support/Sanitizer.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>

namespace quillon::pdf {

std::shared_ptr<Source> EngineTest::open(std::string_view bytes, std::string_view name) const {
    return Source::open(dir.write(name, bytes));
}

std::vector<OutputPage> EngineTest::pagesOf(const std::shared_ptr<Source>& source,
                                            const std::vector<std::uint32_t>& indexes) {
    std::vector<OutputPage> pages;
    const std::uint32_t opening = newOpening();
    for (const std::uint32_t index : indexes) {
        OutputPage page;
        page.origin = SourcePage{source, index, opening};
        pages.push_back(std::move(page));
    }
    return pages;
}

std::vector<OutputPage> EngineTest::pagesOf(const std::shared_ptr<Source>& source) {
    std::vector<std::uint32_t> all(source->pageCount());
    std::iota(all.begin(), all.end(), 0U);
    return pagesOf(source, all);
}

DocumentPlan EngineTest::planOf(const std::vector<std::shared_ptr<Source>>& sources) {
    DocumentPlan plan;
    plan.sync = false;
    plan.base = sources.front();
    for (const auto& source : sources) {
        for (OutputPage& page : pagesOf(source)) plan.pages.push_back(std::move(page));
    }
    return plan;
}

std::string EngineTest::writeSoon(const DocumentPlan& plan) const {
    constexpr double patience = test::isSanitized ? 60 : 10;
    const auto start = std::chrono::steady_clock::now();
    static_cast<void>(writeDocument(plan, dir.file("soon.pdf")));
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), patience);
    return write(plan);
}

std::string EngineTest::write(const DocumentPlan& plan, std::string_view name) const {
    const std::string path = dir.file(name);
    const WriteResult result = writeDocument(plan, path);
    EXPECT_TRUE(result.written);
    EXPECT_EQ(test::qpdfProblems(path), "");
    return path;
}

Strings EngineTest::marks(std::string_view bytes) const {
    const auto source = open(bytes, "marked.pdf");
    if (!source || source->pageCount() == 0) return {};
    return test::pageMarks(write(planOf({source}), "marks.pdf"));
}

std::string EngineTest::contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

int EngineTest::filesInFolder() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(dir.path()), {}));
}

}  // namespace quillon::pdf
