#include "pdf/join/FormJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::fieldLines;
using test::formPdf;
using test::JudgedPdf;
using test::RawPdf;
using test::signedPdf;

const std::string widget = "/Type/Annot/Subtype/Widget/Rect[0 0 9 9]";

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

TEST_F(Forms, AFontThatIsDefinedOftenIsTheOneDefinedLast) {
    constexpr int count = 20000;
    std::string fonts;
    for (int i = 40; i < 40 + count; ++i) fonts += "/F " + std::to_string(i) + " 0 R";
    RawPdf raw = beginPdf("/AcroForm<</Fields[30 0 R]/DR<</Font<<" + fonts + ">>>>>>", {"/Annots[30 0 R]"});
    raw.object(30, "<<" + widget + "/FT/Tx/T(a)>>");
    for (int i = 40; i < 40 + count; ++i) raw.object(i, "<</Type/Font/Number " + std::to_string(i) + ">>");
    const JudgedPdf pdf(writeSoon(planOf({open(raw.table().bytes())})));
    const QJsonObject own =
        pdf.dictionary(form(pdf).value(QStringLiteral("/DR"))).value(QStringLiteral("/Font")).toObject();
    ASSERT_EQ(own.size(), 1);
    EXPECT_EQ(pdf.dictionary(own.value(QStringLiteral("/F"))).value(QStringLiteral("/Number")).toInt(), 39 + count);
}

TEST_F(Forms, ResourcesOfManyKindsThatAreOneListAreReadInBoundedTime) {
    constexpr int count = 5000;
    std::string kinds;
    std::string names;
    for (int i = 0; i < count; ++i) {
        kinds += "/K" + std::to_string(i) + " 31 0 R";
        names += "/N" + std::to_string(i) + " 32 0 R";
    }
    RawPdf raw = beginPdf("/AcroForm<</Fields[30 0 R]/DR<<" + kinds + ">>>>", {"/Annots[30 0 R]"});
    raw.object(30, "<<" + widget + "/FT/Tx/T(a)>>").object(31, "<<" + names + ">>").object(32, "<</Type/Font>>");
    const std::string bytes = raw.table().bytes();
    EXPECT_LT(contentOf(writeSoon(planOf({open(bytes)}))).size(), 2 * bytes.size());
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

TEST_F(Forms, AWidgetOfSeveralPagesIsOneFieldInEachCopy) {
    RawPdf raw = beginPdf("/AcroForm<</Fields[30 0 R 31 0 R]>>", {"/Annots[30 0 R 32 0 R]", "/Annots[30 0 R 32 0 R]"});
    raw.object(30, "<<" + widget + "/FT/Tx/T(a)>>").object(32, "<<" + widget + "/Parent 31 0 R>>");
    raw.object(31, "<</FT/Tx/T(b)/Kids[32 0 R]>>");
    const auto source = open(raw.table().bytes());
    const JudgedPdf pdf(write(planOf({source, source})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"a@1and2=", "b@1and2=", "a-2@3and4=", "b-2@3and4="}));
    EXPECT_EQ(pdf.having(QStringLiteral("/Subtype"), QStringLiteral("/Widget")).size(), 4);
}

TEST_F(Forms, AListOfWidgetsThatPagesShareIsReadOnce) {
    constexpr int count = 300;
    RawPdf raw;
    std::string kids;
    std::string fields;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(10 + 2 * i) + " 0 R ";
        fields += std::to_string(10 + 2 * count + i) + " 0 R ";
        raw.page(10 + 2 * i, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/Annots 3 0 R");
        raw.object(10 + 2 * count + i, "<<" + widget + "/FT/Tx/T(f" + std::to_string(i) + ")>>");
    }
    raw.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields 3 0 R>>>>").object(3, "[" + fields + "]");
    raw.object(2, "<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + "]>>");
    const std::string bytes = raw.table().bytes();
    const auto source = open(bytes);
    const std::string file = write(planOf({source, source}));
    EXPECT_LT(contentOf(file).size(), bytes.size());
    const JudgedPdf pdf(file, JudgedPdf::Widgets::Any);
    EXPECT_EQ(form(pdf).value(QStringLiteral("/Fields")).toArray().size(), 2 * count);
    EXPECT_EQ(pdf.having(QStringLiteral("/Subtype"), QStringLiteral("/Widget")).size(), 2 * count);
}

TEST_F(Forms, ASignatureWhoseValueStandsAboveItsTypeIsGone) {
    RawPdf raw = beginPdf("/AcroForm<</Fields[31 0 R]>>", {"/Annots[30 0 R 33 0 R]"});
    raw.object(30, "<<" + widget + "/FT/Sig/T(s)/Parent 31 0 R>>").object(32, "<</Type/Sig/Contents<00>>>");
    raw.object(33, "<<" + widget + "/FT/Tx/T(t)/V(kept)/Parent 31 0 R>>");
    raw.object(31, "<</T(above)/V 32 0 R/Kids[30 0 R 33 0 R]>>");
    const JudgedPdf pdf(write(planOf({open(raw.table().bytes())})));
    EXPECT_TRUE(pdf.having(QStringLiteral("/Type"), QStringLiteral("/Sig")).isEmpty());
    EXPECT_EQ(fieldLines(pdf), (Strings{"above.s@1=", "above.t@1=kept"}));
}

/// Buttons a and b of one field on a page each, a chosen.
std::string radioPdf(const std::string& state) {
    RawPdf pdf = beginPdf("/AcroForm<</Fields[30 0 R]>>", {"/Annots[31 0 R]", "/Annots[32 0 R]"});
    pdf.object(30, "<</FT/Btn/Ff 49152/T(choice)/V/a/Kids[31 0 R 32 0 R]>>");
    pdf.object(31, "<<" + widget + "/Parent 30 0 R/AP<</N<</a 33 0 R/Off 33 0 R>>>>" + state + ">>");
    pdf.object(32, "<<" + widget + "/Parent 30 0 R/AP 34 0 R/AS/Off>>");
    pdf.stream(33, "/Type/XObject/Subtype/Form/BBox[0 0 9 9]", "0 0 9 9 re f");
    pdf.object(34, "<</N 35 0 R>>").object(35, "<</b 33 0 R/Off 33 0 R>>");
    return pdf.table().bytes();
}

TEST_F(Forms, OfButtonsWhoseChosenOneIsNotTakenNoneIsChosen) {
    for (const std::string state : {"/AS/a", ""}) {
        const auto source = open(radioPdf(state), "radio" + state.substr(0, state.find('/')));
        const auto value = [&](const std::vector<std::vector<std::uint32_t>>& openings, int field) {
            DocumentPlan plan;
            for (const auto& pages : openings) {
                for (OutputPage& page : pagesOf(source, pages)) plan.pages.push_back(std::move(page));
            }
            const JudgedPdf pdf(write(plan));
            const QJsonArray fields = form(pdf).value(QStringLiteral("/Fields")).toArray();
            return pdf.dictionary(fields.at(field)).value(QStringLiteral("/V")).toString();
        };
        EXPECT_EQ(value({{0, 1}}, 0), QStringLiteral("/a"));
        EXPECT_EQ(value({{0}}, 0), QStringLiteral("/a"));
        EXPECT_EQ(value({{1}}, 0), QStringLiteral("/Off"));
        EXPECT_EQ(value({{0, 1}, {1}}, 0), QStringLiteral("/a"));
        EXPECT_EQ(value({{0, 1}, {1}}, 1), QStringLiteral("/Off"));
        EXPECT_EQ(value({{0, 1}, {0}}, 1), QStringLiteral("/a"));
    }
}

/// A comment in the font F of the form, which has no field unless `fields` names some.
std::string commentPdf(const std::string& font, const std::string& fields) {
    RawPdf pdf = beginPdf("/AcroForm<</Fields[" + fields + "]/DR<</Font<</F 32 0 R>>>>>>",
                          {"/Annots[30 0 R 31 0 R<</Subtype/FreeText/Rect[0 0 9 9]/DA(/F 8 Tf)/Contents(c)>>]"});
    pdf.object(30, "<</Type/Annot/Subtype/FreeText/Rect[0 0 9 9]/DA(0 g /F 7 Tf)/Contents(c)>>");
    pdf.object(31, "<<" + widget + "/FT/Tx/T(t)/DA(/F 6 Tf)>>");
    return pdf.object(32, "<</Type/Font/Subtype/Type1/BaseFont/" + font + ">>").table().bytes();
}

TEST_F(Forms, CommentsNameTheirFontAsItIsCalledInTheJoinedForm) {
    for (const std::string fields : {"31 0 R", ""}) {
        const auto a = open(commentPdf("Helvetica", fields), "a" + fields);
        const auto b = open(commentPdf("Courier", fields), "b" + fields);
        const JudgedPdf pdf(write(planOf({a, b})), JudgedPdf::Widgets::Any);
        EXPECT_EQ(appearance(pdf, 0, 0), QStringLiteral("u:0 g /F 7 Tf"));
        EXPECT_EQ(appearance(pdf, 1, 0), QStringLiteral("u:0 g /F-2 7 Tf"));
        EXPECT_EQ(appearance(pdf, 1, 1), QStringLiteral("u:/F-2 6 Tf"));
        EXPECT_EQ(appearance(pdf, 1, 2), QStringLiteral("u:/F-2 8 Tf"));
        const QJsonObject fonts =
            pdf.dictionary(form(pdf).value(QStringLiteral("/DR")))[QStringLiteral("/Font")].toObject();
        EXPECT_EQ(pdf.dictionary(fonts[QStringLiteral("/F-2")])[QStringLiteral("/BaseFont")].toString(),
                  QStringLiteral("/Courier"));
    }
}

}  // namespace
}  // namespace quillon::pdf
