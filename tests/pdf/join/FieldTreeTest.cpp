#include "pdf/join/FieldTree.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RichPdf.h"

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::fieldLines;
using test::JudgedPdf;
using test::RawPdf;

const std::string widget = "/Type/Annot/Subtype/Widget/Rect[0 0 9 9]";

/// Trees of fields that are not as they should be.
class DamagedFields : public EngineTest {
protected:
    /// The fields of the file behind another one, whose page is the first.
    Strings behindAnother(RawPdf& pdf) const {
        const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
        return fieldLines(JudgedPdf(write(planOf({plain, open(pdf.table().bytes())}))));
    }
};

TEST_F(DamagedFields, ThatAreListedInsteadOfTheOneAboveAllStayBelowIt) {
    RawPdf pdf = beginPdf("/AcroForm<</Fields[30 0 R 31 0 R]>>", {"/Annots[30 0 R 31 0 R]"});
    pdf.object(30, "<<" + widget + "/Parent 32 0 R/T(a)>>").object(31, "<<" + widget + "/Parent 32 0 R/T(b)>>");
    pdf.object(32, "<</T(above)/FT/Tx/V(x)>>");
    EXPECT_EQ(behindAnother(pdf), (Strings{"above.a@2=x", "above.b@2=x"}));
}

TEST_F(DamagedFields, ThatTheOneAboveDoesNotListAreFoundOnThePages) {
    for (const std::string kids : {"", "/Kids[]"}) {
        RawPdf pdf = beginPdf("/AcroForm<</Fields[32 0 R]>>", {"/Annots[30 0 R 33 0 R]", "/Annots[31 0 R]"});
        pdf.object(30, "<<" + widget + "/Parent 34 0 R/T(a)>>").object(31, "<<" + widget + "/Parent 34 0 R/T(b)>>");
        pdf.object(32, "<</T(above)/FT/Tx/V(x)" + kids + ">>").object(34, "<</T(between)/Parent 32 0 R>>");
        pdf.object(33, "<</Type/Annot/Subtype/Popup/Rect[0 0 9 9]/Parent 35 0 R>>");
        pdf.object(35, "<</Type/Annot/Subtype/Text/Rect[0 0 9 9]/Popup 33 0 R>>");
        EXPECT_EQ(behindAnother(pdf), (Strings{"above.between.a@2=x", "above.between.b@3=x"}));
    }
}

TEST_F(DamagedFields, ThatAreNoObjectsOfTheirOwnAreKept) {
    RawPdf pdf = beginPdf("/AcroForm<</Fields[<</T(top)/Kids[32 0 R<</T(in)/FT/Tx/V(v)/Kids[30 0 R]>>]>>]>>",
                          {"/Annots[30 0 R 31 0 R]"});
    pdf.object(30, "<<" + widget + ">>").object(31, "<<" + widget + "/Parent 32 0 R>>");
    pdf.object(32, "<</T(out)/FT/Tx/V(w)/Kids[31 0 R<<" + widget + ">>]>>");
    EXPECT_EQ(behindAnother(pdf), (Strings{"top.out@2=w", "top.out@no page=w", "top.in@2=v"}));
}

TEST_F(DamagedFields, ThatAreNoObjectsOfTheirOwnAreRenamedInEachCopy) {
    RawPdf pdf = beginPdf("/AcroForm<</Fields[<</T(top)/FT/Tx/V(v)/Kids[30 0 R]>>]>>", {"/Annots[30 0 R]"});
    pdf.object(30, "<<" + widget + "/T(a)/Parent 99 0 R>>");
    const auto source = open(pdf.table().bytes());
    const std::string file = write(planOf({source, source}));
    EXPECT_EQ(fieldLines(JudgedPdf(file)), (Strings{"top.a@1=v", "top-2.a@2=v"}));
    const auto listed =
        test::runProgram(QStringLiteral("pdftk"), {QString::fromStdString(file), QStringLiteral("dump_data_fields")});
    EXPECT_NE(listed.output.find("FieldName: top-2.a\n"), std::string::npos) << listed.output;
}

TEST_F(DamagedFields, WhoseKidsAreGoneAreKept) {
    RawPdf pdf = beginPdf("/AcroForm<</Fields[30 0 R]>>", {""});
    pdf.object(30, "<</T(data)/FT/Tx/V(v)/Kids[99 0 R 98 0 R]>>");
    EXPECT_EQ(behindAnother(pdf), (Strings{"data@no page=v"}));
}

TEST_F(DamagedFields, AreFoundOnManyPagesInBoundedTime) {
    constexpr int count = 300;
    RawPdf pdf;
    std::string kids;
    std::string annotations;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(10 + 2 * i) + " 0 R ";
        annotations += std::to_string(10 + 2 * count + i) + " 0 R ";
    }
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[4 0 R]>>>>").object(3, "[" + annotations + "]");
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + "]>>");
    pdf.object(4, "<</T(above)/FT/Tx>>").object(5, "<</X(" + std::string(500000, '1') + ")/Parent 6 0 R>>");
    for (int i = 0; i < count; ++i) {
        pdf.page(10 + 2 * i, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/Annots 3 0 R");
        pdf.object(10 + 2 * count + i, "<<" + widget + "/Parent " + (i % 2 == 0 ? "4" : "5") + " 0 R>>");
    }
    const auto source = open(pdf.table().bytes());
    EXPECT_EQ(fieldLines(JudgedPdf(write(planOf({source})), JudgedPdf::Widgets::Any)).size(), count / 2U);
}

}  // namespace
}  // namespace quillon::pdf
