#include "pdf/write/SourcePlan.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/PdfFixture.h"

namespace quillon::pdf {
namespace {

class SourcePlanTest : public EngineTest {
protected:
    /// For each copy `output page:source page`, with a star for a first one.
    static std::string text(const SourcePlan& plan) {
        std::string all;
        for (const auto& copy : plan.copies()) {
            all += (all.empty() ? "" : " ") + std::to_string(copy.outputPage) + ':' + std::to_string(copy.sourcePage);
            if (copy.first) all += '*';
        }
        return all;
    }

    static void add(DocumentPlan& plan, std::vector<OutputPage> pages) {
        for (auto& page : pages) plan.pages.push_back(std::move(page));
    }

    std::shared_ptr<Source> a = open(test::PdfFixture("A", 3).bytes(), "a.pdf");
    std::shared_ptr<Source> b = open(test::PdfFixture("B", 3).bytes(), "b.pdf");
};

TEST_F(SourcePlanTest, ThereIsOnePlanForEachSourceInTheOrderOfPages) {
    DocumentPlan plan;
    add(plan, pagesOf(b, {0}));
    plan.pages.emplace_back().origin = std::make_shared<const BlankPage>();  // belongs to no source
    add(plan, pagesOf(a, {1, 2}));
    add(plan, pagesOf(b, {2}));
    const SourcePlans plans(plan);
    ASSERT_EQ(plans.size(), 2U);
    EXPECT_EQ(plans[0].source(), b);
    EXPECT_EQ(text(plans[0]), "0:0* 4:2*");
    EXPECT_EQ(text(plans[1]), "2:1* 3:2*");
}

TEST_F(SourcePlanTest, TheBaseIsFirstEvenWithoutPages) {
    DocumentPlan plan;
    plan.base = a;
    add(plan, pagesOf(b, {0}));
    const SourcePlans plans(plan);
    ASSERT_EQ(plans.size(), 2U);
    EXPECT_EQ(plans[0].source(), a);
    EXPECT_EQ(text(plans[0]), "");
}

TEST_F(SourcePlanTest, OfSeveralCopiesOfAPageOneIsTheFirst) {
    DocumentPlan plan;
    add(plan, pagesOf(a, {1, 1, 0, 1}));
    EXPECT_EQ(text(SourcePlans(plan)[0]), "0:1* 1:1 2:0* 3:1");
}

TEST_F(SourcePlanTest, TheOpeningWithMostPagesHasTheFirstCopies) {
    DocumentPlan plan;
    add(plan, pagesOf(a, {1}));
    add(plan, pagesOf(a, {0, 1, 2}));
    EXPECT_EQ(text(SourcePlans(plan)[0]), "0:1 1:0* 2:1* 3:2*");
}

TEST_F(SourcePlanTest, OfOpeningsWithEquallyManyPagesTheEarlierOneHas) {
    DocumentPlan plan;
    add(plan, pagesOf(a, {0, 1}));
    add(plan, pagesOf(a, {0, 1}));
    EXPECT_EQ(text(SourcePlans(plan)[0]), "0:0* 1:1* 2:0 3:1");
}

}  // namespace
}  // namespace quillon::pdf
