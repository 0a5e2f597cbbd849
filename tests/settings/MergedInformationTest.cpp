// What the document information of a merged file says when the sheet is left as it comes, and when it is not.

#include "merge/MergeOperation.h"
#include "merge/cacheData.h"
#include "platform/jobs/MainThread.h"
#include "tests/settings/SettingSheetTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/RecordingOwner.h"

#include <QLineEdit>

#include <memory>
#include <vector>

namespace quillon::test {
namespace {

class MergedInformation : public SettingSheet {
protected:
    void add(const PdfFixture& fixture, std::int32_t method = MergeMethodWhole) {
        const auto name = "in" + std::to_string(list_.size()) + ".pdf";
        list_.push_back(std::make_shared<cacheData>(urlOf(folder_.write(name, fixture.bytes()))));
        list_.back()->setMergeMethod(method);
        list_.back()->setValue(QStringLiteral("1"));
    }
    /// Merges the list as the sheet says.
    JudgedPdf merged() {
        RecordingOwner owner;
        MergeOperation job(list_, urlOf(target()), controller(), owner);
        job.main();
        MainThread::waitUntil([&owner] { return owner.calls.size() == 2; });
        EXPECT_EQ(qpdfProblems(target()), "");
        return JudgedPdf(target());
    }
    [[nodiscard]] std::string target() const { return folder_.file("out.pdf"); }

    /// `Key=value` for the five texts that the file has.
    static QStringList information(const JudgedPdf& file) {
        const QJsonObject entries = file.dictionary(file.trailer().value(QStringLiteral("/Info")));
        QStringList texts;
        for (const char* key : {"Title", "Author", "Subject", "Keywords", "Creator"}) {
            const QString value = entries.value(QLatin1Char('/') + QLatin1String(key)).toString();
            if (!value.isNull()) texts.append(QLatin1String(key) + QLatin1Char('=') + value.mid(2));  // without u:
        }
        return texts;
    }
    static QString metadata(const JudgedPdf& file) {
        return QString::fromUtf8(file.rawStream(file.catalog().value(QStringLiteral("/Metadata"))));
    }

private:
    [[nodiscard]] static QUrl urlOf(const std::string& path) {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    }

    std::vector<std::shared_ptr<cacheData>> list_;
};

PdfFixture described() {
    return std::move(PdfFixture("A", 2)
                         .info("Title", "Report")
                         .info("Author", "Ann")
                         .info("Subject", "Sums")
                         .info("Keywords", " pdf,  merge;tools and  more ")
                         .info("Creator", "Some writer"));
}

TEST_F(MergedInformation, TheMacrosThatItComesWithKeepTheOriginalsToTheLetter) {
    start();
    add(described());
    add(PdfFixture("B", 1).info("Title", "Other"));
    const JudgedPdf file = merged();
    EXPECT_EQ(information(file),
              (QStringList{QStringLiteral("Title=Report"), QStringLiteral("Author=Ann"), QStringLiteral("Subject=Sums"),
                           QStringLiteral("Keywords= pdf,  merge;tools and  more "),
                           QLatin1String("Creator=") + controller().resolveCreator()}));
    const QString xmp = metadata(file);
    for (const char* text : {">Report<", ">Ann<", ">Sums<", "> pdf,  merge;tools and  more <"}) {
        EXPECT_TRUE(xmp.contains(QLatin1String(text))) << text << " in " << xmp.toStdString();
    }
    EXPECT_FALSE(xmp.contains(QStringLiteral("Some writer")));
}

TEST_F(MergedInformation, WithoutOriginalsOnlyTheCreatorIsNamed) {
    start();
    add(PdfFixture("A", 2));
    EXPECT_EQ(information(merged()), QStringList{QLatin1String("Creator=") + controller().resolveCreator()});
}

TEST_F(MergedInformation, ARunThatBeginsWithAPartHasNoOriginals) {
    start();
    add(described(), MergeMethodPart);
    EXPECT_EQ(information(merged()), QStringList{QLatin1String("Creator=") + controller().resolveCreator()});
}

TEST_F(MergedInformation, TextsAroundTheMacrosAreWritten) {
    start();
    add(described());
    field("titleField").setText(QString::fromUtf8("%Original_Title% — 中文, again %Original_Title%"));
    retype("authorField", QStringLiteral("Bob & <Ann>"));
    retype("subjectField", QStringLiteral("%Original_Title%"));
    retype("keywordsField", QStringLiteral("new %Original_Keywords%"));
    const JudgedPdf file = merged();
    EXPECT_EQ(information(file),
              (QStringList{QString::fromUtf8("Title=Report — 中文, again Report"), QStringLiteral("Author=Bob & <Ann>"),
                           QStringLiteral("Subject=%Original_Title%"),
                           QStringLiteral("Keywords=new  pdf,  merge;tools and  more "),
                           QLatin1String("Creator=") + controller().resolveCreator()}));
    EXPECT_TRUE(metadata(file).contains(QString::fromUtf8(">Report — 中文, again Report<")));
    EXPECT_EQ(documentInfo(target(), "Author"), "Bob & <Ann>");
}

TEST_F(MergedInformation, AnEmptyFieldKeepsTheOriginal) {
    start();
    add(described());
    retype("titleField", QString());
    retype("authorField", QString());
    const QStringList texts = information(merged());
    EXPECT_TRUE(texts.contains(QStringLiteral("Title=Report")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Author=Ann")));
}

}  // namespace
}  // namespace quillon::test
