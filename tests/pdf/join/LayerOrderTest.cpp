#include "pdf/join/LayerOrder.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::RawPdf;

/// The layers A to D, objects 30 to 33, of which A and B are used by the first page and C and D by the second.
class OrderOfLayers : public EngineTest {
protected:
    static RawPdf layers(const std::string& order) {
        const auto uses = [](const std::string& first, const std::string& second) {
            return "/Resources<</Properties<</a " + first + " 0 R/b " + second + " 0 R>>>>";
        };
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R/OCProperties<</OCGs[30 0 R 31 0 R 32 0 R 33 0 R]/D<</Order" + order +
                          ">>>>>>");
        pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 11 0 R]/MediaBox[0 0 9 9]>>");
        pdf.object(10, "<</Type/Page/Parent 2 0 R" + uses("30", "31") + ">>");
        pdf.object(11, "<</Type/Page/Parent 2 0 R" + uses("32", "33") + ">>");
        for (int i = 0; i < 4; ++i) {
            pdf.object(30 + i, std::string("<</Type/OCG/Name(") + static_cast<char>('A' + i) + ")>>");
        }
        return pdf;
    }

    static QString described(const JudgedPdf& pdf, const QJsonValue& element) {
        const QJsonValue resolved = pdf.resolve(element);
        if (resolved.isObject()) return resolved.toObject().value(QStringLiteral("/Name")).toString().mid(2);
        if (!resolved.isArray()) return QStringLiteral("(%1)").arg(resolved.toString().mid(2));
        QStringList list;
        for (const QJsonValue& kid : resolved.toArray()) list += described(pdf, kid);
        return QStringLiteral("[%1]").arg(list.join(QStringLiteral(" ")));
    }

    /// The order when `pages` are taken: the names of layers, headings in parentheses, lists in brackets.
    std::string order(RawPdf pdf, const std::vector<std::uint32_t>& pages) const {
        DocumentPlan plan;
        plan.pages = pagesOf(open(pdf.table().bytes()), pages);
        const JudgedPdf out(write(plan));
        const QJsonObject properties = out.dictionary(out.catalog().value(QStringLiteral("/OCProperties")));
        const QJsonValue order = properties.value(QStringLiteral("/D")).toObject().value(QStringLiteral("/Order"));
        return order.isUndefined() ? "none" : described(out, order).toStdString();
    }
};

TEST_F(OrderOfLayers, OfAWholeInputStays) {
    const std::string nested = "[30 0 R[(one)31 0 R[(two)32 0 R]]33 0 R]";
    EXPECT_EQ(order(layers(nested), {0, 1}), "[A [(one) B [(two) C]] D]");
    EXPECT_EQ(order(layers("[(one)[30 0 R 31 0 R](two)32 0 R 33 0 R]"), {0, 1}), "[(one) [A B] (two) C D]");
}

TEST_F(OrderOfLayers, LosesHeadingsWithoutLayers) {
    EXPECT_EQ(order(layers("[[(one)30 0 R 31 0 R][(two)32 0 R 33 0 R]]"), {0}), "[[(one) A B]]");
    EXPECT_EQ(order(layers("[[(one)30 0 R[(in)[(deep)31 0 R]]][(two)32 0 R[(three)33 0 R]]]"), {1}),
              "[[(two) C [(three) D]]]");
    EXPECT_EQ(order(layers("[[(all)[(one)30 0 R][(two)32 0 R]]]"), {1}), "[[(all) [(two) C]]]");
    EXPECT_EQ(order(layers("[(one)[30 0 R 31 0 R](two)[32 0 R 33 0 R](three)]"), {1}), "[(two) [C D]]");
    EXPECT_EQ(order(layers("[[(only)30 0 R 31 0 R]]"), {1}), "none");
}

TEST_F(OrderOfLayers, KeepsWhatStandsBelowALayerThatIsGoneBelowItsName) {
    EXPECT_EQ(order(layers("[32 0 R 30 0 R[33 0 R]]"), {1}), "[C [(A) D]]");
    EXPECT_EQ(order(layers("[32 0 R 30 0 R[(own)33 0 R 31 0 R]]"), {1}), "[C [(own) D]]");
}

TEST_F(OrderOfLayers, MayHaveListsOfTheirOwn) {
    RawPdf pdf = layers(" 40 0 R");
    pdf.object(40, "[30 0 R 41 0 R 42 0 R]").object(41, "[(one)31 0 R]").object(42, "[43 0 R 32 0 R]");
    EXPECT_EQ(order(pdf.object(43, "(two)"), {1}), "[[(two) C]]");
}

TEST_F(OrderOfLayers, OfListsThatNameEachOtherIsReadInBoundedTime) {
    for (const std::string key : {"/Order", "/RBGroups"}) {
        RawPdf pdf = layers("[33 0 R]" + key + " 40 0 R");
        for (int level = 40; level < 60; ++level) {
            std::string list;
            for (int i = 0; i < 50; ++i) list += std::to_string(level + 1) + " 0 R ";
            pdf.object(level, "[" + list + "]");
        }
        pdf.object(60, "[32 0 R 60 0 R]");
        EXPECT_NE(order(pdf, {1}), "");
    }
}

}  // namespace
}  // namespace quillon::pdf
