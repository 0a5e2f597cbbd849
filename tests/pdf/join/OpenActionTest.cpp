#include "pdf/join/OpenAction.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::JudgedPdf;
using test::RawPdf;

/// Files of three pages, with names for the second.
class OpenActions : public EngineTest {
protected:
    static QString text(const char* latin) { return QString::fromLatin1(latin); }

    std::shared_ptr<Source> opening(const std::string& action) const {
        RawPdf pdf =
            beginPdf("/Dests<</old[12 0 R/Fit]>>/Names<</Dests<</Names[(goal)[12 0 R/Fit]]>>>>/OpenAction " + action,
                     {"", "", ""});
        pdf.object(30, "[1/FitH 5]").object(31, "<</S/GoTo/D 30 0 R>>");
        return open(pdf.table().bytes(), "in");
    }

    /// The output of these pages of a file that opens so, with `plain` behind it if that is there.
    JudgedPdf taken(const std::string& action, const std::vector<std::uint32_t>& pages,
                    const std::shared_ptr<Source>& plain) const {
        DocumentPlan plan;
        plan.base = opening(action);
        plan.pages = pagesOf(plan.base, pages);
        if (plain) plan.pages.push_back(pagesOf(plain).front());
        return JudgedPdf(write(plan));
    }

    /// The page, counted from 0, that a file opens with; -1 when it does not say.
    static qsizetype firstShown(const JudgedPdf& pdf) {
        QJsonValue place = pdf.resolve(pdf.catalog().value(text("/OpenAction")));
        if (place.isObject()) place = pdf.resolve(place.toObject().value(text("/D")));
        const QString name = place.toString();
        if (!name.isEmpty()) {
            const QJsonValue names = pdf.catalog().value(text("/Names")).toObject().value(text("/Dests"));
            const QJsonArray leaves = pdf.dictionary(names).value(text("/Names")).toArray();
            for (qsizetype i = 0; i + 1 < leaves.size(); i += 2) {
                if (leaves[i].toString() == name) place = pdf.resolve(leaves[i + 1]);
            }
            const QJsonObject old = pdf.catalog().value(text("/Dests")).toObject();
            if (old.contains(name)) place = old.value(name);
        }
        return pdf.pages().indexOf(place.toArray().at(0).toString());
    }
};

const Strings toTheSecond{
    "[12 0 R/Fit]",        "[1/Fit]",          "30 0 R", "31 0 R", "<</S/GoTo/D[1/Fit]>>", "<</S/GoTo/D[12 0 R/Fit]>>",
    "<</S/GoTo/D(goal)>>", "<</S/GoTo/D/old>>"};

TEST_F(OpenActions, LeadToTheirPageWhereverThatIs) {
    const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
    for (const auto& other : {std::shared_ptr<Source>(), plain}) {
        for (const std::string& action : toTheSecond) {
            EXPECT_EQ(firstShown(taken(action, {2, 0, 1}, other)), 2) << action;
        }
    }
    const JudgedPdf pdf(taken("31 0 R", {2, 1}, plain));
    const QJsonObject action = pdf.dictionary(pdf.catalog().value(text("/OpenAction")));
    EXPECT_EQ(pdf.resolve(action.value(text("/D"))).toArray(), (QJsonArray{pdf.pages()[1], "/FitH", 5}));
}

TEST_F(OpenActions, ThatLeadToNoPageOfTheOutputAreGone) {
    const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
    for (const auto& other : {std::shared_ptr<Source>(), plain}) {
        for (const std::string& action : toTheSecond) {
            EXPECT_FALSE(taken(action, {2, 0}, other).catalog().contains(text("/OpenAction"))) << action;
        }
        EXPECT_FALSE(taken("[7/Fit]", {0, 1}, other).catalog().contains(text("/OpenAction")));
        EXPECT_FALSE(taken("99 0 R", {0, 1}, other).catalog().contains(text("/OpenAction")));
    }
}

TEST_F(OpenActions, ThatLeadNowhereInTheDocumentStay) {
    const JudgedPdf pdf(taken("<</S/URI/URI(http://example.org)>>", {0}, nullptr));
    const QJsonObject action = pdf.catalog().value(text("/OpenAction")).toObject();
    EXPECT_EQ(action.value(text("/URI")).toString(), text("u:http://example.org"));
}

}  // namespace
}  // namespace quillon::pdf
