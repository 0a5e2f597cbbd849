#include "pdf/join/PageLabelJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

namespace quillon::pdf {
namespace {

using test::labelledPdf;
using test::labelLines;
using test::RawPdf;

class PageLabels : public EngineTest {
protected:
    std::shared_ptr<Source> plain() const {
        return open(RawPdf().catalogOf({3, 5}).page(3, "P1").page(5, "P2").table().bytes(), "plain");
    }
    std::string written(const std::vector<OutputPage>& pages) const {
        DocumentPlan plan;
        plan.pages = pages;
        return write(plan);
    }
};

TEST_F(PageLabels, PagesKeepTheirLabels) {
    const auto a = open(labelledPdf("A"), "a");
    const auto b = open(labelledPdf("B"), "b");
    EXPECT_EQ(labelLines(write(planOf({a, b}))), (Strings{"1 r 1", "2 D A-5", "3 r 1", "4 D A-5"}));
    EXPECT_EQ(labelLines(written(pagesOf(a, {1, 0, 1}))), (Strings{"1 D A-5", "2 r 1", "3 D A-5"}));
}

TEST_F(PageLabels, PagesOfAFileWithoutLabelsHaveTheirNumbers) {
    const auto a = open(labelledPdf("A"), "a");
    EXPECT_EQ(labelLines(write(planOf({a, plain()}))), (Strings{"1 r 1", "2 D A-5", "3 D 1"}));
    EXPECT_EQ(labelLines(write(planOf({plain(), a}))), (Strings{"1 D 1", "3 r 1", "4 D A-5"}));
}

TEST_F(PageLabels, BlankPagesHaveNone) {
    const auto a = open(labelledPdf("A"), "a");
    std::vector<OutputPage> pages = pagesOf(a);
    pages.emplace_back();
    pages.emplace_back();
    const auto more = pagesOf(plain());
    pages.insert(pages.end(), more.begin(), more.end());
    EXPECT_EQ(labelLines(written(pages)), (Strings{"1 r 1", "2 D A-5", "3  1", "5 D 1"}));
}

TEST_F(PageLabels, NoInputHasAnyAndNoOutputHas) {
    EXPECT_TRUE(labelLines(write(planOf({plain(), plain()}))).empty());
}

}  // namespace
}  // namespace quillon::pdf
