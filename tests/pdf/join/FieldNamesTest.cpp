#include "pdf/join/FieldNames.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::fieldLines;
using test::JudgedPdf;
using test::RawPdf;

const std::string widget = "/Type/Annot/Subtype/Widget/Rect[0 0 9 9]";
// The name Größe.
const std::string docEncoded =
    "(Gr\xF6\xDF"
    "e)";
const std::string utf16 = "<FEFF0047007200F600DF0065>";
const std::string utf8 =
    "(\xEF\xBB\xBFGr\xC3\xB6\xC3\x9F"
    "e)";

class NamesOfFields : public EngineTest {
protected:
    std::shared_ptr<Source> withField(const std::string& file, const std::string& entries) const {
        RawPdf pdf = beginPdf("/AcroForm<</Fields[30 0 R]>>", {"/Annots[30 0 R]"});
        pdf.object(30, "<<" + widget + "/FT/Tx/V(" + file + ")" + entries + ">>");
        return open(pdf.table().bytes(), file);
    }
};

TEST_F(NamesOfFields, AreTheSameInEveryEncoding) {
    const JudgedPdf pdf(write(planOf({withField("a", "/T" + docEncoded), withField("b", "/T" + utf16),
                                      withField("c", "/T" + utf8), withField("d", "/T(Grosse)")})));
    // qpdf gives the bytes of what is marked as no Unicode.
    EXPECT_EQ(fieldLines(pdf), (Strings{"4772f6df65@1=a", "Größe-2@2=b", "Größe-3@3=c", "Grosse@4=d"}));
}

TEST_F(NamesOfFields, OfCharactersOutsideTheFirstPlaneAreTheSameInBothEncodings) {
    const JudgedPdf pdf(
        write(planOf({withField("a", "/T(\xEF\xBB\xBF\xF0\x9F\x98\x80)"), withField("b", "/T<FEFFD83DDE00>")})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"😀@1=a", "😀-2@2=b"}));
}

TEST_F(NamesOfFields, ThatAreMissingLeaveTheFieldsSeparate) {
    for (const std::string name : {"", "/T()", "/T<FEFF>"}) {
        const JudgedPdf pdf(write(planOf({withField("a", name), withField("b", name)})));
        EXPECT_EQ(fieldLines(pdf), (Strings{"@1=a", "@2=b"})) << name;
    }
}

TEST_F(NamesOfFields, BelowOneWithoutANameAreRenamed) {
    const auto withKid = [this](const std::string& file) {
        RawPdf pdf = beginPdf("/AcroForm<</Fields[31 0 R]>>", {"/Annots[30 0 R]"});
        pdf.object(30, "<<" + widget + "/Parent 32 0 R/T(in)/V(" + file + ")>>");
        pdf.object(31, "<</FT/Tx/Kids[32 0 R]>>").object(32, "<</T(a)/Parent 31 0 R/Kids[30 0 R]>>");
        return open(pdf.table().bytes(), file);
    };
    const JudgedPdf pdf(write(planOf({withKid("x"), withKid("y")})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"a.in@1=x", "a-2.in@2=y"}));
}

TEST_F(NamesOfFields, InObjectStreamsWithoutAnyValueAreRenamed) {
    const auto packed = [this](const std::string& file) {
        RawPdf pdf = beginPdf("/AcroForm<</Fields[30 0 R]>>", {"/Annots[30 0 R]"});
        pdf.packed(40, {{30, "<<" + widget + "/FT/Tx/T(a)>>"}}).crossStream(41);
        return open(pdf.bytes(), file);
    };
    const JudgedPdf pdf(write(planOf({packed("x"), packed("y")})));
    EXPECT_EQ(fieldLines(pdf), (Strings{"a@1=", "a-2@2="}));
}

std::string reserve(FieldNames& names, std::string_view name) {
    return names.reserve(name, FieldNames::comparable(name));
}

TEST(FieldNames, EndWithANumberInTheirOwnEncoding) {
    FieldNames names;
    EXPECT_EQ(reserve(names, "a"), "");
    EXPECT_EQ(reserve(names, "a-2"), "");
    EXPECT_EQ(reserve(names, std::string_view("\xFE\xFF\0a", 4)), "-3");
    EXPECT_EQ(reserve(names,
                      "\xEF\xBB\xBF"
                      "a"),
              "-4");
    EXPECT_EQ(FieldNames::ended(std::string_view("\xFE\xFF\0a", 4), "-3"), std::string_view("\xFE\xFF\0a\0-\0"
                                                                                            "3",
                                                                                            8));
}

TEST(FieldNames, ThatAreMalformedAreEqualToThemselvesOnly) {
    FieldNames names;
    EXPECT_EQ(reserve(names, "\xEF\xBB\xBF\xFF"), "");
    EXPECT_EQ(reserve(names, "\xEF\xBB\xBF\xFE"), "");
    EXPECT_EQ(reserve(names, "\xEF\xBB\xBF\xC3"), "");
    EXPECT_EQ(reserve(names, "\xEF\xBB\xBF\xFF"), "-2");
}

}  // namespace
}  // namespace quillon::pdf
