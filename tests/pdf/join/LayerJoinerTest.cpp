#include "pdf/join/LayerJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::layeredPdf;
using test::layerLines;
using test::pageMarks;
using test::RawPdf;

class Layers : public EngineTest {};

TEST_F(Layers, OfAllInputsAreShownOrHiddenAsTheyWere) {
    for (const bool hidesAll : {false, true}) {
        const auto a = open(layeredPdf("A", hidesAll), "a");
        const auto b = open(layeredPdf("B", !hidesAll), "b");
        const JudgedPdf pdf(write(planOf({a, b})));
        EXPECT_EQ(layerLines(pdf), (Strings{"A-shown+", "A-hidden-", "B-shown+", "B-hidden-"}));
        const QJsonObject configuration =
            pdf.dictionary(pdf.catalog()[QStringLiteral("/OCProperties")]).value(QStringLiteral("/D")).toObject();
        EXPECT_EQ(configuration.value(QStringLiteral("/Order")).toArray().size(), 4);
        EXPECT_EQ(configuration.value(QStringLiteral("/Locked")).toArray().size(), 2);
    }
}

TEST_F(Layers, OfALaterInputAloneStayHidden) {
    const auto plain = open(RawPdf().catalogOf({3}).page(3, "P").table().bytes(), "p");
    const std::string file = write(planOf({plain, open(layeredPdf("B"), "b")}));
    EXPECT_EQ(layerLines(JudgedPdf(file)), (Strings{"B-shown+", "B-hidden-"}));
    // Another program draws the one and not the other.
    const auto drawn = pageMarks(file);
    ASSERT_EQ(drawn.size(), 3U);
    EXPECT_NE(drawn[1].find("layerB1"), std::string::npos);
    EXPECT_EQ(drawn[2].find("layerB2"), std::string::npos);
}

TEST_F(Layers, ThoseOfNoPageThatWasTakenAreGone) {
    const auto source = open(layeredPdf("B"), "b");
    DocumentPlan plan;
    plan.pages = pagesOf(source, {1});
    const JudgedPdf pdf(write(plan));
    EXPECT_EQ(layerLines(pdf), (Strings{"B-hidden-"}));
    EXPECT_EQ(pdf.having(QStringLiteral("/Type"), QStringLiteral("/OCG")).size(), 1);
}

TEST_F(Layers, OfAnInputTakenTwiceAreThereOnce) {
    const auto source = open(layeredPdf("A"), "a");
    EXPECT_EQ(layerLines(JudgedPdf(write(planOf({source, source})))), (Strings{"A-shown+", "A-hidden-"}));
}

TEST_F(Layers, TheIntentsOfAllInputsCount) {
    const auto input = [this](const std::string& name, const std::string& intent) {
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R/OCProperties<</OCGs[5 0 R]/D<<" + intent + ">>>>>>");
        pdf.object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>");
        pdf.page(3, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]");
        return open(pdf.object(5, "<</Type/OCG/Name(x)>>").table().bytes(), name);
    };
    const auto intents = [this](const std::vector<std::shared_ptr<Source>>& sources) {
        const JudgedPdf pdf(write(planOf(sources)));
        const QJsonObject properties = pdf.dictionary(pdf.catalog()[QStringLiteral("/OCProperties")]);
        return properties.value(QStringLiteral("/D")).toObject().value(QStringLiteral("/Intent"));
    };
    const auto plain = input("a", "");
    EXPECT_TRUE(intents({plain, input("b", "/Intent/View")}).isUndefined());
    EXPECT_EQ(intents({plain, input("c", "/Intent[/Design/View]")}).toArray(), (QJsonArray{"/Design", "/View"}));
}

}  // namespace
}  // namespace quillon::pdf
