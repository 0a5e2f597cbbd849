#include "pdf/join/DocumentJoiner.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/JudgedParts.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <QJsonArray>

namespace quillon::pdf {
namespace {

using test::attachedPdf;
using test::beginPdf;
using test::JudgedPdf;
using test::presentedPdf;
using test::RawPdf;

class JoinedDocuments : public EngineTest {
protected:
    static QString text(const char* latin) { return QString::fromLatin1(latin); }
};

TEST_F(JoinedDocuments, AttachmentsAndScriptsOfAllInputsAreKept) {
    const std::string file = write(planOf({open(attachedPdf("one"), "a"), open(attachedPdf("two"), "b")}));
    EXPECT_EQ(test::attachmentLines(file), (Strings{"one.txt", "two.txt"}));
    const JudgedPdf pdf(file);
    EXPECT_EQ(pdf.catalog().value(text("/AF")).toArray().size(), 2);
    EXPECT_EQ(pdf.having(text("/Type"), text("/Filespec")).size(), 2);
    const QJsonObject names = pdf.dictionary(pdf.catalog().value(text("/Names")));
    const QJsonArray scripts = pdf.dictionary(names.value(text("/JavaScript"))).value(text("/Names")).toArray();
    ASSERT_EQ(scripts.size(), 4);
    EXPECT_EQ(pdf.dictionary(scripts[1]).value(text("/JS")).toString(), text("u:one"));
    EXPECT_EQ(pdf.dictionary(scripts[3]).value(text("/JS")).toString(), text("u:two"));
}

TEST_F(JoinedDocuments, OutputIntentsAreKeptAndEqualOnesOnce) {
    const JudgedPdf pdf(write(
        planOf({open(presentedPdf("a"), "1"), open(presentedPdf("b"), "2"), open(presentedPdf("a") + "\n", "3")})));
    QStringList identifiers;
    for (const QJsonValue& intent : pdf.catalog().value(text("/OutputIntents")).toArray()) {
        identifiers += pdf.dictionary(intent).value(text("/OutputConditionIdentifier")).toString();
    }
    EXPECT_EQ(identifiers, (QStringList{text("u:a"), text("u:b")}));
}

TEST_F(JoinedDocuments, TheLanguageIsThatOfTheFirstInputThatHasOne) {
    const auto plain = open(test::commentedPdf("p"), "p");
    const auto a = open(presentedPdf("a"), "a");
    const auto b = open(presentedPdf("b"), "b");
    EXPECT_EQ(JudgedPdf(write(planOf({a, b}))).catalog().value(text("/Lang")).toString(), text("u:a"));
    EXPECT_EQ(JudgedPdf(write(planOf({plain, b, a}))).catalog().value(text("/Lang")).toString(), text("u:b"));
    EXPECT_FALSE(JudgedPdf(write(planOf({plain, plain}))).catalog().contains(text("/Lang")));
}

TEST_F(JoinedDocuments, TransitionsTravelWithTheirPages) {
    const auto a = open(presentedPdf("a"), "a");
    const JudgedPdf pdf(write(planOf({a, a})));
    for (const int page : {1, 3}) {
        const QJsonObject entries = pdf.dictionary(pdf.pages()[page]);
        EXPECT_EQ(entries.value(text("/Dur")).toInt(), 3);
        EXPECT_EQ(entries.value(text("/Trans")).toObject().value(text("/S")).toString(), text("/Wipe"));
    }
}

TEST_F(JoinedDocuments, CommentsPopUpsAndRepliesLeadToTheirOwnCopies) {
    const auto source = open(test::commentedPdf("A"));
    const JudgedPdf pdf(write(planOf({source, source, source})));
    QStringList seen;
    for (const qsizetype page : {0, 2, 4}) {
        const QString place = pdf.pages()[page];
        const QJsonArray annotations = pdf.dictionary(place).value(text("/Annots")).toArray();
        ASSERT_EQ(annotations.size(), 3);
        const auto entry = [&](int annotation, const char* key) {
            return pdf.dictionary(annotations[annotation]).value(text(key));
        };
        EXPECT_EQ(entry(0, "/Popup"), annotations[1]);
        EXPECT_EQ(entry(1, "/Parent"), annotations[0]);
        EXPECT_EQ(entry(2, "/IRT"), annotations[0]);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(entry(i, "/P").toString(), place);
        for (const QJsonValue& annotation : annotations) seen += annotation.toString();
    }
    seen.removeDuplicates();
    EXPECT_EQ(seen.size(), 9);
}

TEST_F(JoinedDocuments, OfAttachmentsThatANameTreeNamesTwiceTheFirstIsKept) {
    constexpr int count = 8000;
    std::string names = "(a)31 0 R";
    for (int i = 0; i < count; ++i) names += "(a)30 0 R";
    RawPdf raw = beginPdf("/Names<</EmbeddedFiles<</Names[" + names + "(b)30 0 R]>>>>", {""});
    raw.object(30, "<</Type/Filespec/F(x)/UF(x)/EF<</F 32 0 R>>>>").stream(32, "/Type/EmbeddedFile", "x");
    raw.object(31, "<</Type/Filespec/F(first)/UF(first)/EF<</F 32 0 R>>>>");
    const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
    const auto source = open(raw.table().bytes());
    const JudgedPdf pdf(writeSoon(planOf({plain, source, source})));
    const QJsonObject trees = pdf.dictionary(pdf.catalog().value(text("/Names")));
    const QJsonArray files = pdf.dictionary(trees.value(text("/EmbeddedFiles"))).value(text("/Names")).toArray();
    ASSERT_EQ(files.size(), 4);
    EXPECT_EQ(files[0].toString(), text("u:a"));
    EXPECT_EQ(pdf.dictionary(files[1]).value(text("/F")).toString(), text("u:first"));
    EXPECT_EQ(files[2].toString(), text("u:b"));
}

TEST_F(JoinedDocuments, AnOutputIntentThatIsListedOftenIsReadAndWrittenOnce) {
    constexpr int count = 20000;
    std::string list;
    for (int i = 0; i < count; ++i) list += "30 0 R ";
    RawPdf raw = beginPdf("/OutputIntents[" + list + "]", {""});
    const std::string bytes = raw.object(30, "<</S/X/Info(" + std::string(200000, 'y') + ")>>").table().bytes();
    const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
    const std::string file = writeSoon(planOf({plain, open(bytes), open(bytes + "\n", "again")}));
    EXPECT_LT(contentOf(file).size(), bytes.size());
    EXPECT_EQ(JudgedPdf(file).catalog().value(text("/OutputIntents")).toArray().size(), 1);
}

TEST_F(JoinedDocuments, OutputIntentsThatShareWhatTheySayAreComparedInBoundedTime) {
    constexpr int count = 3000;
    std::string list;
    for (int i = 0; i < count; ++i) list += "<</S/X" + std::to_string(i) + "/Info 30 0 R>>";
    RawPdf raw = beginPdf("/OutputIntents[" + list + "]", {""});
    std::string numbers;
    for (int i = 0; i < 100000; ++i) numbers += "1 ";
    const std::string bytes = raw.object(30, "[" + numbers + "]").table().bytes();
    const auto plain = open(beginPdf("", {""}).table().bytes(), "plain");
    const std::string file = writeSoon(planOf({plain, open(bytes), open(bytes + "\n", "again")}));
    EXPECT_LT(contentOf(file).size(), bytes.size());
    EXPECT_EQ(JudgedPdf(file).catalog().value(text("/OutputIntents")).toArray().size(), count);
}

}  // namespace
}  // namespace quillon::pdf
