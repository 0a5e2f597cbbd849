#include "pdf/join/ArticleJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RichPdf.h"

namespace quillon::pdf {
namespace {

using test::articleLines;
using test::articlePdf;
using test::JudgedPdf;

class Articles : public EngineTest {};

TEST_F(Articles, OfAllInputsAreKept) {
    const JudgedPdf pdf(write(planOf({open(articlePdf("A"), "a"), open(articlePdf("B"), "b")})));
    EXPECT_EQ(articleLines(pdf), (Strings{"A@1,2", "B@3,4"}));
}

TEST_F(Articles, CopiesOfPagesHaveTheirOwn) {
    const auto source = open(articlePdf("A"), "a");
    EXPECT_EQ(articleLines(JudgedPdf(write(planOf({source, source})))), (Strings{"A@1,2", "A@3,4"}));
}

TEST_F(Articles, GoOnOverThePagesThatWereTaken) {
    const auto source = open(articlePdf("A"), "a");
    DocumentPlan plan;
    plan.pages = pagesOf(source, {1});
    const JudgedPdf pdf(write(plan));
    EXPECT_EQ(articleLines(pdf), (Strings{"A@1"}));
    EXPECT_EQ(pdf.having(QStringLiteral("/Type"), QStringLiteral("/Bead")).size(), 1);
}

}  // namespace
}  // namespace quillon::pdf
