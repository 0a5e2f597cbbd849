#include "pdf/join/ArticleJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

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

TEST_F(Articles, OneThatIsListedOftenIsTakenOnce) {
    constexpr int count = 3000;
    test::RawPdf pdf;
    std::string threads;
    for (int i = 0; i < count; ++i) threads += "5 0 R ";
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/Threads[" + threads + "]>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>").page(3, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]");
    pdf.object(5, "<</Type/Thread/F 20 0 R>>");
    for (int i = 0; i < count; ++i) {
        const std::string next = std::to_string(20 + (i + 1) % count) + " 0 R";
        pdf.object(20 + i, "<</Type/Bead/P 3 0 R/R[0 0 1 1]/N " + next + ">>");
    }
    const auto source = open(pdf.table().bytes(), "a");
    const JudgedPdf joined(write(planOf({open(articlePdf("B"), "b"), source})));
    EXPECT_EQ(joined.catalog().value(QStringLiteral("/Threads")).toArray().size(), 2);
}

}  // namespace
}  // namespace quillon::pdf
