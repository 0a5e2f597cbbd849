#include "pdf/join/FormJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::fieldLines;
using test::formPdf;
using test::JudgedPdf;
using test::RawPdf;
using test::signedPdf;

class Forms : public EngineTest {
protected:
    [[nodiscard]] static DocumentPlan parts(const std::vector<std::vector<OutputPage>>& parts) {
        DocumentPlan plan;
        for (const auto& part : parts) plan.pages.insert(plan.pages.end(), part.begin(), part.end());
        return plan;
    }
    static QJsonObject form(const JudgedPdf& pdf) {
        return pdf.dictionary(pdf.catalog().value(QStringLiteral("/AcroForm")));
    }
    static QString appearance(const JudgedPdf& pdf, qsizetype page, qsizetype annotation) {
        return pdf.annotations(page).at(annotation).value(QStringLiteral("/DA")).toString();
    }
};

TEST_F(Forms, AFormThatIsTheOnlyOneStays) {
    const auto source = open(formPdf("A"), "a");
    const JudgedPdf pdf(write(planOf({source})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"person.first@1=A", "person.both@1=shared", "person.both@2=shared", "sum@2="}));
    EXPECT_EQ(form(pdf).value(QStringLiteral("/DA")).toString(), QStringLiteral("u:/F 9 Tf 0 g"));
    EXPECT_TRUE(form(pdf).value(QStringLiteral("/NeedAppearances")).toBool());
    EXPECT_FALSE(form(pdf).contains(QStringLiteral("/XFA")));
    EXPECT_EQ(form(pdf).value(QStringLiteral("/CO")).toArray().size(), 1);
}

TEST_F(Forms, FieldsOfALaterInputAreRenamedWhereTheirNameIsTaken) {
    const JudgedPdf pdf(write(planOf({open(formPdf("A"), "a"), open(formPdf("B"), "b")})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"person.first@1=A", "person.both@1=shared", "person.both@2=shared",
                                        "sum@2=", "person-2.first@3=B", "person-2.both@3=shared",
                                        "person-2.both@4=shared", "sum-2@4="}));
    EXPECT_EQ(form(pdf).value(QStringLiteral("/CO")).toArray().size(), 2);
}

TEST_F(Forms, AnInputTakenTwiceHasFieldsOfItsOwnEachTime) {
    const auto source = open(formPdf("A"), "a");
    const JudgedPdf pdf(write(planOf({source, source, source})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"person.first@1=A", "person.both@1=shared", "person.both@2=shared",
                                        "sum@2=", "person-2.first@3=A", "person-2.both@3=shared",
                                        "person-2.both@4=shared", "sum-2@4=", "person-3.first@5=A",
                                        "person-3.both@5=shared", "person-3.both@6=shared", "sum-3@6="}));
    EXPECT_EQ(form(pdf).value(QStringLiteral("/CO")).toArray().size(), 3);
}

TEST_F(Forms, APageTakenTwiceFromOneOpeningHasFieldsOfItsOwnEachTime) {
    const auto source = open(formPdf("A"), "a");
    const JudgedPdf pdf(write(parts({pagesOf(source, {0, 1, 0, 1, 0})})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"person.first@1=A", "person.both@1=shared", "person.both@2=shared", "sum@2=",
                                        "person-2.first@3=A", "person-2.both@3=shared", "person-2.both@4=shared",
                                        "sum-2@4=", "person-3.first@5=A", "person-3.both@5=shared"}));
}

TEST_F(Forms, FieldsOfPagesThatWereNotTakenAreGone) {
    const auto source = open(formPdf("A"), "a");
    const std::string file = write(parts({pagesOf(source, {1})}));
    const JudgedPdf pdf(file);
    EXPECT_EQ(fieldLines(pdf), (Strings{"person.both@1=shared", "sum@1="}));
    EXPECT_EQ(pdf.having(QStringLiteral("/Subtype"), QStringLiteral("/Widget")).size(), 2);
}

TEST_F(Forms, WithoutAFieldThereIsNoForm) {
    RawPdf raw;
    raw.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[]>>>>");
    raw.object(2, "<</Type/Pages/Count 1/Kids[10 0 R]>>").page(10, "A");
    const auto source = open(raw.table().bytes());
    EXPECT_FALSE(JudgedPdf(write(planOf({source}))).catalog().contains(QStringLiteral("/AcroForm")));
}

TEST_F(Forms, AFontOfTheSameNameThatIsAnotherGetsANewOne) {
    const JudgedPdf pdf(write(planOf({open(formPdf("A"), "a"), open(formPdf("B", "Courier"), "b")})));
    EXPECT_EQ(appearance(pdf, 1, 1), QStringLiteral("u:/F 12 Tf 1 g"));
    EXPECT_EQ(appearance(pdf, 3, 1), QStringLiteral("u:/F-2 12 Tf 1 g"));
    const QJsonObject fonts =
        pdf.dictionary(form(pdf).value(QStringLiteral("/DR")))[QStringLiteral("/Font")].toObject();
    EXPECT_EQ(pdf.dictionary(fonts[QStringLiteral("/F")])[QStringLiteral("/BaseFont")].toString(),
              QStringLiteral("/Helvetica"));
    EXPECT_EQ(pdf.dictionary(fonts[QStringLiteral("/F-2")])[QStringLiteral("/BaseFont")].toString(),
              QStringLiteral("/Courier"));
    // The default of the second form is that of its fields, no longer that of the form.
    const QJsonArray fields = form(pdf)[QStringLiteral("/Fields")].toArray();
    EXPECT_EQ(pdf.dictionary(fields[2])[QStringLiteral("/DA")].toString(), QStringLiteral("u:/F-2 9 Tf 0 g"));
}

TEST_F(Forms, AnEqualFontIsShared) {
    const JudgedPdf pdf(write(planOf({open(formPdf("A"), "a"), open(formPdf("B"), "b")})));
    EXPECT_EQ(appearance(pdf, 3, 1), QStringLiteral("u:/F 12 Tf 1 g"));
    const QJsonObject fonts =
        pdf.dictionary(form(pdf).value(QStringLiteral("/DR")))[QStringLiteral("/Font")].toObject();
    EXPECT_EQ(fonts.size(), 1);
}

TEST_F(Forms, ASignatureLosesItsValueAndKeepsItsLook) {
    for (const bool above : {false, true}) {
        const auto source = open(signedPdf("A", above), above ? "above" : "plain");
        const std::string file = write(planOf({source}));
        const JudgedPdf pdf(file);
        EXPECT_EQ(fieldLines(pdf), (Strings{"seal@1="}));
        EXPECT_TRUE(pdf.annotations(0).first().contains(QStringLiteral("/AP")));
        EXPECT_TRUE(pdf.having(QStringLiteral("/Type"), QStringLiteral("/Sig")).isEmpty());
        EXPECT_FALSE(pdf.catalog().contains(QStringLiteral("/Perms")));
        EXPECT_FALSE(pdf.catalog().contains(QStringLiteral("/DSS")));
        const auto judged = test::runProgram(QStringLiteral("pdfsig"), {QString::fromStdString(file)});
        EXPECT_NE(judged.output.find("is not signed"), std::string::npos) << judged.output;
    }
}

TEST_F(Forms, AnotherProgramFindsTheFields) {
    const std::string file = write(planOf({open(formPdf("A"), "a"), open(formPdf("B"), "b")}));
    const auto listed =
        test::runProgram(QStringLiteral("pdftk"), {QString::fromStdString(file), QStringLiteral("dump_data_fields")});
    for (const std::string name : {"person.first", "person.both", "sum", "person-2.first", "person-2.both", "sum-2"}) {
        EXPECT_NE(listed.output.find("FieldName: " + name + "\n"), std::string::npos) << name;
    }
}

TEST_F(Forms, AHierarchyThatLeadsBackToItselfIsSurvived) {
    RawPdf raw;
    raw.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[20 0 R 22 0 R 99 0 R 3 20 0 R]>>>>");
    raw.object(2, "<</Type/Pages/Count 1/Kids[10 0 R]>>");
    raw.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 99 99]/Annots[22 0 R]");
    raw.object(20, "<</T(a)/Parent 21 0 R/Kids[21 0 R 22 0 R 20 0 R]>>")
        .object(21, "<</T(b)/Parent 20 0 R/Kids[20 0 R]>>");
    raw.object(22, "<</Type/Annot/Subtype/Widget/Rect[0 0 9 9]/FT/Tx/T(c)/Parent 20 0 R/P 10 0 R>>");
    const auto source = open(raw.table().bytes());
    const JudgedPdf pdf(write(planOf({source, source})));
    EXPECT_EQ(pdf.pages().size(), 2);
    EXPECT_EQ(fieldLines(pdf).size(), 2U);
}

TEST_F(Forms, FieldsThatShareTheirKidsAreReadInBoundedTime) {
    constexpr int count = 20000;
    RawPdf pdf;
    std::string kids;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[4 0 R]>>>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[6 0 R]>>");
    pdf.page(6, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]");
    pdf.object(4, "<</T(r)/Kids 5 0 R>>");
    for (int i = 10; i < 10 + count; ++i) {
        kids += std::to_string(i) + " 0 R ";
        pdf.object(i, "<</FT/Tx/Kids 5 0 R>>");
    }
    pdf.object(5, "[" + kids + "]");
    const JudgedPdf joined(write(planOf({open(pdf.table().bytes(), "a")})));
    EXPECT_EQ(form(joined).value(QStringLiteral("/Fields")).toArray().size(), 1);
}

TEST_F(Forms, AFontOfManyNamesIsComparedOnce) {
    const auto input = [this](const std::string& name, const std::string& more) {
        RawPdf pdf;
        std::string fonts;
        for (int i = 0; i < 20000; ++i) fonts += "/F" + std::to_string(i) + " 5 0 R";
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[4 0 R]/DR<</Font<<" + fonts + ">>>>>>>>");
        pdf.object(2, "<</Type/Pages/Count 1/Kids[6 0 R]>>");
        pdf.page(6, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/Annots[4 0 R]");
        pdf.object(4, "<</Type/Annot/Subtype/Widget/FT/Tx/T(a)/Rect[0 0 9 9]>>");
        std::string widths;
        for (int i = 0; i < 50000; ++i) widths += "1 ";
        return open(pdf.object(5, "<</Type/Font/W[" + widths + more + "]>>").table().bytes(), name);
    };
    const JudgedPdf joined(write(planOf({input("a", ""), input("b", ""), input("c", "2")})));
    const QJsonObject resources = joined.dictionary(form(joined).value(QStringLiteral("/DR")));
    EXPECT_EQ(resources.value(QStringLiteral("/Font")).toObject().size(), 40000);
}

TEST_F(Forms, ASignatureThatTheFormDoesNotListIsGone) {
    for (const std::string form : {"", "/AcroForm<</Fields[]>>"}) {
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R" + form + ">>").object(2, "<</Type/Pages/Count 1/Kids[6 0 R]>>");
        pdf.page(6, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/Annots[4 0 R]");
        pdf.object(4, "<</Type/Annot/Subtype/Stamp/FT/Sig/T(s)/Rect[0 0 9 9]/V 5 0 R>>");
        pdf.object(5, "<</Type/Sig/Filter/X/Contents(x)/ByteRange[0 1 2 3]>>");
        const JudgedPdf joined(write(planOf({open(formPdf("A"), "a"), open(pdf.table().bytes(), "b")})));
        EXPECT_FALSE(joined.annotations(2).first().contains(QStringLiteral("/V")));
        EXPECT_EQ(joined.having(QStringLiteral("/Type"), QStringLiteral("/Sig")).size(), 0);
    }
}

}  // namespace
}  // namespace quillon::pdf
