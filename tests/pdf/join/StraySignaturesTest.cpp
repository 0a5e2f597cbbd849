#include "pdf/join/StraySignatures.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RichPdf.h"

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::JudgedPdf;
using test::RawPdf;

const std::string value =
    "<</Type/Sig/Filter/Adobe.PPKLite/SubFilter/adbe.pkcs7.detached/ByteRange[0 9 9 9]/Contents<00>>>";
const std::string place = "/Type/Annot/Subtype/Widget/Rect[0 0 9 9]";

class StraySignature : public EngineTest {
protected:
    /// Expects that no value of a signature is left and that poppler finds nothing signed.
    static void expectUnsigned(const std::string& file) {
        const JudgedPdf pdf(file, JudgedPdf::Widgets::Any);
        for (qsizetype page = 0; page < pdf.pages().size(); ++page) {
            for (const QJsonObject& annotation : pdf.annotations(page)) {
                EXPECT_FALSE(annotation.contains(QStringLiteral("/V")));
            }
        }
        EXPECT_TRUE(pdf.having(QStringLiteral("/Type"), QStringLiteral("/Sig")).isEmpty());
        const auto judged = test::runProgram(QStringLiteral("pdfsig"), {QString::fromStdString(file)});
        EXPECT_NE(judged.exitCode, -1);
        EXPECT_EQ(judged.output.find("Signer Certificate"), std::string::npos) << judged.output;
    }

    /// Alone, as the base and behind another.
    void expectUnsigned(const std::string& bytes, const std::string& name) const {
        const auto source = open(bytes, name);
        const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
        for (const auto& sources : std::vector<std::vector<std::shared_ptr<Source>>>{
                 {source}, {source, plain}, {plain, source}, {source, source}}) {
            expectUnsigned(write(planOf(sources)));
        }
    }
};

TEST_F(StraySignature, OfADocumentWithoutAFormLosesItsValue) {
    RawPdf pdf = beginPdf("", {"/Annots[30 0 R]"});
    pdf.object(30, "<<" + place + "/FT/Sig/T(s)/V 31 0 R>>").object(31, value);
    expectUnsigned(pdf.table().bytes(), "a");
}

TEST_F(StraySignature, OfATypeThatIsAnObjectOfItsOwnLosesItsValue) {
    RawPdf pdf = beginPdf("", {"/Annots[30 0 R]"});
    pdf.object(30, "<<" + place + "/FT 32 0 R/T(s)/V 31 0 R>>").object(31, value).object(32, "/Sig");
    expectUnsigned(pdf.table().bytes(), "a");
}

TEST_F(StraySignature, OfATypeThatStandsAboveLosesItsValue) {
    RawPdf pdf = beginPdf("", {"/Annots[30 0 R]"});
    pdf.object(30, "<<" + place + "/Parent 32 0 R/V 31 0 R>>").object(31, value);
    pdf.object(32, "<</T(s)/Parent 33 0 R/Kids[30 0 R]>>").object(33, "<</FT/Sig/Kids[32 0 R]>>");
    expectUnsigned(pdf.table().bytes(), "a");
}

TEST_F(StraySignature, ThatStandsInThePageItselfLosesItsValue) {
    RawPdf pdf = beginPdf("", {"/Annots[<<" + place + "/FT/Sig/T(s)/V 31 0 R>>]"});
    pdf.object(31, value);
    expectUnsigned(pdf.table().bytes(), "a");
}

TEST_F(StraySignature, WithEscapesInItsNamesLosesItsValue) {
    RawPdf pdf = beginPdf("", {"/Annots[30 0 R]"});
    pdf.object(30, "<<" + place + "/F#54/S#69g/T(s)/#56 31 0 R>>").object(31, value);
    expectUnsigned(pdf.table().bytes(), "a");
}

TEST_F(StraySignature, InAnObjectStreamLosesItsValue) {
    for (const std::string entries : {"/FT/Sig/T(s)/V 31 0 R", "/F#54/S#69g/T(s)/#56 31 0 R"}) {
        RawPdf pdf = beginPdf("", {"/Annots[30 0 R]"});
        pdf.packed(20, {{31, value}, {30, "<<" + place + entries + ">>"}});
        expectUnsigned(pdf.crossStream(21).bytes(), "a");
    }
}

TEST_F(StraySignature, IsNoOtherFieldWithAValue) {
    RawPdf pdf = beginPdf("", {"/Annots[30 0 R 31 0 R 33 0 R]"});
    pdf.object(33, "<<" + place + "/Parent 34 0 R/V(kept)>>").object(34, "<</Parent 34 0 R/Kids[33 0 R]>>");
    pdf.object(30, "<<" + place + "/FT/Tx/T(Sig)/V(kept)>>").object(31, "<<" + place + "/Parent 32 0 R/V(kept)>>");
    pdf.object(32, "<</FT/Tx/T(t)/Kids[31 0 R]>>");
    const JudgedPdf joined(write(planOf({open(pdf.table().bytes())})), JudgedPdf::Widgets::Any);
    for (const QJsonObject& annotation : joined.annotations(0)) {
        EXPECT_EQ(annotation.value(QStringLiteral("/V")).toString(), QStringLiteral("u:kept"));
    }
}

TEST(StraySignatures, AreNotLookedForWhereNoneCanBe) {
    EXPECT_TRUE(StraySignatures::mayBeIn("<</FT/Sig/V 5 0 R>>"));
    EXPECT_TRUE(StraySignatures::mayBeIn("<</FT 4 0 R/V 5 0 R>>"));
    EXPECT_TRUE(StraySignatures::mayBeIn("<</Parent 4 0 R/V 5 0 R>>"));
    EXPECT_FALSE(StraySignatures::mayBeIn("<</FT/Tx/Parent 4 0 R/V(x)>>"));
    EXPECT_FALSE(StraySignatures::mayBeIn("<</Type/Annot/Subtype/Link/Dest(Sig)/Vx 3>>"));
    EXPECT_FALSE(StraySignatures::mayBeIn("<</P 3 0 R/N 4 0 R/V 5 0 R>>"));
}

}  // namespace
}  // namespace quillon::pdf
