#include "pdf/join/FieldNames.h"
#include "pdf/join/FieldRenames.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::JudgedPdf;
using test::RawPdf;

const std::string widget = "/Type/Annot/Subtype/Widget/Rect[0 0 9 9]";

class ActionsOnFields : public EngineTest {
protected:
    static QString text(const char* latin) { return QString::fromLatin1(latin); }

    /// The field sum.net and another, with buttons that act on them in every way.
    static std::string actingPdf() {
        RawPdf pdf = beginPdf("/AcroForm<</Fields[30 0 R 32 0 R 33 0 R 34 0 R]>>",
                              {"/Annots[31 0 R 32 0 R 33 0 R 34 0 R 36 0 R]/AA<</O 37 0 R>>"});
        pdf.object(30, "<</T(sum)/Kids[31 0 R]>>").object(31, "<<" + widget + "/T(net)/FT/Tx/Parent 30 0 R>>");
        const std::string button = "<<" + widget + "/FT/Btn/Ff 65536";
        pdf.object(32, button + "/T(reset)/A<</S/ResetForm/Fields[(sum.net)31 0 R(other)]>>>>");
        pdf.object(33, button + "/T(hide)/A<</S/Hide/T(sum)/Next<</S/Hide/T[<FEFF00730075006D002E006E00650074>]>>>>>>");
        pdf.object(34, button + "/T(send)/A 35 0 R>>").object(35, "<</S/SubmitForm/F(x)/Fields 38 0 R>>");
        pdf.object(36, "<</Type/Annot/Subtype/Link/Rect[0 0 9 9]/Contents(Hide)/T(sum)/A<</S/URI/URI(ResetForm)>>>>");
        pdf.object(37, "<</S/Hide/T(sum.net)/H false>>").object(38, "[(sum)(sums)(reset)]");
        return pdf.table().bytes();
    }

    static void expectNames(const JudgedPdf& pdf, qsizetype page, const QString& ending) {
        const auto annotations = pdf.annotations(page);
        ASSERT_EQ(annotations.size(), 5);
        const auto action = [&](qsizetype annotation) {
            return pdf.dictionary(annotations[annotation].value(text("/A")));
        };
        const QString sum = text("u:sum") + ending;
        const QJsonArray reset = action(1).value(text("/Fields")).toArray();
        EXPECT_EQ(reset.at(0).toString(), sum + text(".net"));
        EXPECT_EQ(pdf.dictionary(reset.at(1)).value(text("/T")).toString(), text("u:net"));
        EXPECT_EQ(reset.at(2).toString(), text("u:other"));
        EXPECT_EQ(action(2).value(text("/T")).toString(), sum);
        const QJsonObject next = action(2).value(text("/Next")).toObject();
        EXPECT_EQ(next.value(text("/T")).toArray(), (QJsonArray{sum + text(".net")}));
        EXPECT_EQ(pdf.resolve(action(3).value(text("/Fields"))).toArray(),
                  (QJsonArray{sum, text("u:sums"), text("u:reset") + ending}));
        EXPECT_EQ(annotations[4].value(text("/T")).toString(), text("u:sum"));
        const QJsonObject more = pdf.dictionary(pdf.pages()[page]).value(text("/AA")).toObject();
        EXPECT_EQ(pdf.dictionary(more.value(text("/O"))).value(text("/T")).toString(), sum + text(".net"));
    }
};

TEST_F(ActionsOnFields, NameThemAsTheyAreCalledInTheJoinedForm) {
    const JudgedPdf pdf(write(planOf({open(actingPdf(), "a"), open(actingPdf(), "b")})));
    expectNames(pdf, 0, {});
    expectNames(pdf, 1, text("-2"));
}

TEST_F(ActionsOnFields, OfASecondCopyNameItsOwn) {
    const auto source = open(actingPdf());
    const JudgedPdf pdf(write(planOf({source, source})));
    expectNames(pdf, 0, {});
    // What the page itself has is shared by its copies.
    EXPECT_EQ(pdf.dictionary(pdf.annotations(1)[2].value(text("/A"))).value(text("/T")).toString(), text("u:sum-2"));
}

TEST_F(ActionsOnFields, OfFieldsThatAreNoAnnotationsAreChanged) {
    const auto input = [this](const std::string& name) {
        RawPdf pdf = beginPdf("/AcroForm<</Fields[31 0 R]>>", {"/Annots[30 0 R]"});
        pdf.object(30, "<<" + widget + "/Parent 31 0 R>>").object(32, "<</S/ResetForm/Fields[(a)]>>");
        pdf.object(31, "<</T(a)/FT/Tx/Kids[30 0 R]/AA<</K<</S/Hide/T(a)>>/F 32 0 R>>>>");
        return open(pdf.table().bytes(), name);
    };
    const JudgedPdf pdf(write(planOf({input("a"), input("b")})));
    const QJsonArray fields = pdf.dictionary(pdf.catalog().value(text("/AcroForm"))).value(text("/Fields")).toArray();
    const QJsonObject actions = pdf.dictionary(fields.at(1)).value(text("/AA")).toObject();
    EXPECT_EQ(pdf.dictionary(actions.value(text("/K"))).value(text("/T")).toString(), text("u:a-2"));
    EXPECT_EQ(pdf.dictionary(actions.value(text("/F"))).value(text("/Fields")).toArray(), QJsonArray{text("u:a-2")});
}

TEST(FieldRenames, KeepWhatStandsBehindTheFirstName) {
    FieldRenames names;
    names.add(FieldNames::comparable("a"), "-2");
    names.add(FieldNames::comparable("b"), "");
    names.add(FieldNames::comparable("c.d"), "-3");
    EXPECT_EQ(names.renamed("a"), "a-2");
    EXPECT_EQ(names.renamed("a.b.c"), "a-2.b.c");
    EXPECT_EQ(names.renamed("c.d"), "c.d-3");
    EXPECT_EQ(names.renamed("b.a"), std::nullopt);
    EXPECT_EQ(names.renamed("ab"), std::nullopt);
    EXPECT_EQ(names.renamed("\xEF\xBB\xBF"
                            "a.x"),
              "\xEF\xBB\xBF"
              "a-2.x");
}

}  // namespace
}  // namespace quillon::pdf
