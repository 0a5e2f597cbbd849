// Runs of the whole driver.

#include "tests/support/ExternalReader.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/ProtectedFile.h"
#include "tests/support/TempDir.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace quillon::test {
namespace {

using Strings = std::vector<std::string>;

class MergeDriver : public testing::Test {
protected:
    void SetUp() override {
        (void)dir_.write("a.pdf", PdfFixture("A", 3).bytes());
        (void)dir_.write("b.pdf", PdfFixture("B", 2).bytes());
        (void)dir_.write("picture.pbm", "P1\n2 2\n1 0\n0 1\n");
    }

    /// Runs the driver. `DIR/` in an argument stands for the folder of the files.
    ProgramResult run(const QStringList& arguments) const {
        QStringList replaced = arguments;
        replaced.replaceInStrings(QStringLiteral("DIR/"), QString::fromStdString(dir_.path().string() + "/"));
        return runProgram(QStringLiteral(QUILLON_MERGE_DRIVER), replaced);
    }

    /// The value behind `name=` in the line that the driver printed.
    static std::string reported(const ProgramResult& result, const char* name) {
        const QRegularExpression pattern(QStringLiteral("(^| )%1=([^ \n]*)").arg(QLatin1String(name)));
        return pattern.match(QString::fromStdString(result.output)).captured(2).toStdString();
    }

    [[nodiscard]] std::string out() const { return dir_.file("out.pdf"); }
    [[nodiscard]] bool wroteSomething() const { return QFile::exists(QString::fromStdString(out())); }

    TempDir dir_;
};

TEST_F(MergeDriver, MergesAndReportsOneLine) {
    const auto result = run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf"), QStringLiteral("DIR/b.pdf")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(pageMarks(out()), (Strings{"A1", "A2", "A3", "B1", "B2"}));
    const QRegularExpression line(
        QStringLiteral("^pages=5 bytes=[1-9][0-9]* seconds=[0-9]+\\.[0-9]{6} peak_kib=[1-9][0-9]* warnings=0\n$"));
    EXPECT_TRUE(line.match(QString::fromStdString(result.output)).hasMatch()) << result.output;
    EXPECT_EQ(reported(result, "bytes"), std::to_string(QFile(QString::fromStdString(out())).size()));
    EXPECT_EQ(result.errors, "");
}

TEST_F(MergeDriver, TakesEveryMethod) {
    const auto result =
        run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf@part=2-3,1"), QStringLiteral("DIR/a.pdf@cross=2"),
             QStringLiteral("DIR/b.pdf@cross-reverse=1"), QStringLiteral("DIR/b.pdf@repeat")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(pageMarks(out()), (Strings{"A2", "A3", "A1", "A1", "B2", "B1", "B2", "A3", "B1", "B1", "B2"}));
}

TEST_F(MergeDriver, WritesWithoutSync) {
    const auto result = run({QStringLiteral("--no-sync"), QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(pageMarks(out()), (Strings{"A1", "A2", "A3"}));
}

TEST_F(MergeDriver, ALimitOnTheSizeOfFilesIsAnErrorOfWriting) {
    (void)dir_.write("out.pdf", "old");
    const QString limited = QStringLiteral("ulimit -f 1; exec \"$0\" \"$@\"");
    const auto result =
        runProgram(QStringLiteral("sh"), {QStringLiteral("-c"), limited, QStringLiteral(QUILLON_MERGE_DRIVER),
                                          QString::fromStdString(out()), QString::fromStdString(dir_.file("a.pdf"))});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("could not be written"), std::string::npos) << result.errors;
    EXPECT_EQ(QFile(QString::fromStdString(out())).size(), 3);
}

TEST_F(MergeDriver, UnlocksAnEntryAndProtectsTheOutput) {
    protectFile(dir_.file("a.pdf"), dir_.file("secret.pdf"), QStringLiteral("u"), QStringLiteral("o"));
    const QStringList protection{QStringLiteral("--setting"), QStringLiteral("isUserEncrypt=1"),
                                 QStringLiteral("--setting"), QStringLiteral("userEncryptPassword=new")};
    const QStringList entries{QStringLiteral("DIR/out.pdf"), QStringLiteral("--password"), QStringLiteral("u"),
                              QStringLiteral("DIR/secret.pdf"), QStringLiteral("DIR/b.pdf")};
    const auto result = run(protection + entries);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(pageMarks(out(), QStringLiteral("new")), (Strings{"A1", "A2", "A3", "B1", "B2"}));
    EXPECT_FALSE(opensInQpdf(out(), QStringLiteral("u")));
}

TEST_F(MergeDriver, AppliesSettings) {
    const auto result = run({QStringLiteral("--setting"), QStringLiteral("isAddPage=1"), QStringLiteral("--setting"),
                             QStringLiteral("addedPageUrl=DIR/b.pdf"), QStringLiteral("DIR/out.pdf"),
                             QStringLiteral("DIR/a.pdf"), QStringLiteral("DIR/b.pdf")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(pageMarks(out()), (Strings{"A1", "A2", "A3", "B1", "B1", "B2"}));
}

TEST_F(MergeDriver, AFileThatIsNoPdfIsAPicture) {
    const auto result =
        run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf"), QStringLiteral("DIR/picture.pbm")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(reported(result, "pages"), "4");
    EXPECT_EQ(reported(result, "warnings"), "0");
}

TEST_F(MergeDriver, LoadsQtGuiOnlyForPicturesAndText) {
    // Makes the dynamic linker report what it loads.
    qputenv("LD_DEBUG", "files");
    const auto withoutPicture = run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf")});
    const auto withPicture = run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/picture.pbm")});
    const auto withText =
        run({QStringLiteral("--setting"), QStringLiteral("isAddWaterMark=1"), QStringLiteral("--setting"),
             QStringLiteral("getWaterMarkContent=Draft"), QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf")});
    qunsetenv("LD_DEBUG");
    const auto loads = [](const ProgramResult& result, const char* library) {
        return result.errors.find(library) != std::string::npos;
    };
    EXPECT_EQ(withoutPicture.exitCode, 0);
    EXPECT_TRUE(loads(withoutPicture, "libQt6Core"));
    EXPECT_FALSE(loads(withoutPicture, "libQt6Gui"));
    EXPECT_EQ(withPicture.exitCode, 0);
    EXPECT_TRUE(loads(withPicture, "libQt6Gui"));
    EXPECT_EQ(withText.exitCode, 0);
    EXPECT_TRUE(loads(withText, "libQt6Gui"));
}

TEST_F(MergeDriver, WhatCannotBeReadIsAWarningAndContributesNothing) {
    (void)dir_.write("text.txt", "no picture");
    const auto result = run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/missing.pdf"),
                             QStringLiteral("DIR/text.txt"), QStringLiteral("DIR/b.pdf")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(pageMarks(out()), (Strings{"B1", "B2"}));
    EXPECT_EQ(reported(result, "warnings"), "2");
    EXPECT_EQ(result.errors, dir_.file("missing.pdf") + ": does not exist\n" + dir_.file("text.txt") +
                                 ": cannot be read as a picture\n");
}

TEST_F(MergeDriver, AFifoIsNotWaitedFor) {
    ASSERT_EQ(::mkfifo(dir_.file("fifo").c_str(), 0600), 0);
    const auto result = run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/fifo"), QStringLiteral("DIR/b.pdf")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(reported(result, "pages"), "2");
}

TEST_F(MergeDriver, AFileWithAnAtInItsNameIsFound) {
    (void)dir_.write("a@repeat", PdfFixture("R", 1).bytes());
    const auto result =
        run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a@repeat"), QStringLiteral("DIR/a@repeat@part=1,1")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(pageMarks(out()), (Strings{"R1", "R1", "R1"}));
}

TEST_F(MergeDriver, NothingToWriteIsFailure) {
    const auto result = run({QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/missing.pdf")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(reported(result, "pages"), "0");
    EXPECT_EQ(reported(result, "bytes"), "0");
    // A line a warning; the engine may add its own about the target.
    EXPECT_EQ(result.errors.rfind(dir_.file("missing.pdf") + ": does not exist\n", 0), 0U) << result.errors;
    EXPECT_EQ(reported(result, "warnings"),
              std::to_string(std::count(result.errors.begin(), result.errors.end(), '\n')));
    EXPECT_FALSE(wroteSomething());
}

TEST_F(MergeDriver, ATargetThatCannotBeWrittenIsFailure) {
    const auto result = run({QStringLiteral("DIR/no folder/out.pdf"), QStringLiteral("DIR/a.pdf")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(reported(result, "pages"), "0");
    EXPECT_EQ(reported(result, "bytes"), "0");
}

TEST_F(MergeDriver, UsageErrorsRunNothing) {
    for (const auto& arguments : {
             QStringList{},
             QStringList{QStringLiteral("DIR/out.pdf")},
             QStringList{QStringLiteral("--nonsense"), QStringLiteral("DIR/out.pdf"), QStringLiteral("DIR/a.pdf")},
             QStringList{QStringLiteral("--setting"), QStringLiteral("nonsense=1"), QStringLiteral("DIR/out.pdf"),
                         QStringLiteral("DIR/a.pdf")},
             QStringList{QStringLiteral("--setting"), QStringLiteral("isAddPage=maybe"), QStringLiteral("DIR/out.pdf"),
                         QStringLiteral("DIR/a.pdf")},
         }) {
        const auto result = run(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(result.output, "");
        EXPECT_NE(result.errors.find("--help"), std::string::npos) << result.errors;
        EXPECT_FALSE(wroteSomething());
    }
}

TEST_F(MergeDriver, HelpIsPrinted) {
    const auto result = run({QStringLiteral("--help")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output.rfind("Usage: merge_driver", 0), 0U) << result.output;
    EXPECT_EQ(result.errors, "");
}

}  // namespace
}  // namespace quillon::test
