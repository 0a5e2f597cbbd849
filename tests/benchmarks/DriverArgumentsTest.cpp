#include "benchmarks/DriverArguments.h"
#include "merge/cacheData.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

/// Splits at blanks; `''` is an empty argument.
QStringList split(const char* text) {
    QStringList arguments = QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (auto& argument : arguments) {
        if (argument == QLatin1String("''")) argument = QStringLiteral("");
    }
    return arguments;
}

DriverArguments parsed(const char* text) {
    const auto result = DriverArguments::parse(split(text));
    if (const auto* error = std::get_if<QString>(&result)) {
        ADD_FAILURE() << text << ": " << error->toStdString();
        return {};
    }
    return std::get<DriverArguments>(result);
}

std::string error(const char* text) {
    const auto result = DriverArguments::parse(split(text));
    const auto* message = std::get_if<QString>(&result);
    return message != nullptr ? message->toStdString() : "none";
}

void expectEntry(const DriverEntry& entry, const char* file, std::int32_t method, const char* value) {
    EXPECT_EQ(entry.file, QString::fromLatin1(file));
    EXPECT_EQ(entry.mergeMethod, method);
    EXPECT_EQ(entry.value, QString::fromLatin1(value));
    EXPECT_EQ(entry.value.isNull(), value == nullptr);
}

TEST(DriverArguments, TheFirstNameIsTheOutputAndTheOthersAreEntries) {
    const auto arguments = parsed("out.pdf a.pdf b.png");
    EXPECT_EQ(arguments.target, QStringLiteral("out.pdf"));
    ASSERT_EQ(arguments.entries.size(), 2U);
    expectEntry(arguments.entries[0], "a.pdf", MergeMethodWhole, nullptr);
    expectEntry(arguments.entries[1], "b.png", MergeMethodWhole, nullptr);
    EXPECT_FALSE(arguments.withoutSync);
    EXPECT_FALSE(arguments.wantsHelp);
    EXPECT_TRUE(arguments.settings.empty());
}

TEST(DriverArguments, OptionsMayStandAnywhere) {
    for (const char* text : {"--no-sync out.pdf a.pdf", "out.pdf --no-sync a.pdf", "out.pdf a.pdf --no-sync"}) {
        EXPECT_TRUE(parsed(text).withoutSync) << text;
    }
}

TEST(DriverArguments, SettingsKeepTheirOrderAndTheRestOfTheirText) {
    const auto arguments = parsed("--setting isAddPage=1 --setting resolveTitle=a=b --setting resolveAuthor= out a");
    ASSERT_EQ(arguments.settings.size(), 3U);
    EXPECT_EQ(arguments.settings[0], std::make_pair(QStringLiteral("isAddPage"), QStringLiteral("1")));
    EXPECT_EQ(arguments.settings[1], std::make_pair(QStringLiteral("resolveTitle"), QStringLiteral("a=b")));
    EXPECT_EQ(arguments.settings[2], std::make_pair(QStringLiteral("resolveAuthor"), QStringLiteral("")));
}

TEST(DriverArguments, APasswordIsThatOfTheNextEntryOnly) {
    const auto arguments = parsed("out a.pdf --password secret b.pdf c.pdf");
    ASSERT_EQ(arguments.entries.size(), 3U);
    EXPECT_TRUE(arguments.entries[0].password.isNull());
    EXPECT_EQ(arguments.entries[1].password, QStringLiteral("secret"));
    EXPECT_TRUE(arguments.entries[2].password.isNull());
}

TEST(DriverArguments, AnEmptyPasswordIsNotAnAbsentOne) {
    const auto arguments = parsed("out --password '' a.pdf");
    ASSERT_EQ(arguments.entries.size(), 1U);
    EXPECT_FALSE(arguments.entries[0].password.isNull());
    EXPECT_TRUE(arguments.entries[0].password.isEmpty());
}

TEST(DriverArguments, APasswordMayLookLikeAnOption) {
    EXPECT_EQ(parsed("out --password --no-sync a.pdf").entries.at(0).password, QStringLiteral("--no-sync"));
}

TEST(DriverArguments, NamesMayBeginLikeOptionsBehindTwoDashes) {
    const auto arguments = parsed("-- --out --a.pdf");
    EXPECT_EQ(arguments.target, QStringLiteral("--out"));
    ASSERT_EQ(arguments.entries.size(), 1U);
    EXPECT_EQ(arguments.entries[0].file, QStringLiteral("--a.pdf"));
}

TEST(DriverArguments, HelpNeedsNothingElse) {
    EXPECT_TRUE(parsed("--help").wantsHelp);
    EXPECT_TRUE(parsed("out --help --nonsense").wantsHelp);
}

TEST(DriverArguments, TheUsageTextNamesEveryMethodAndSetting) {
    const QString usage = DriverArguments::usage();
    for (const char* word : {"@part=", "@cross=", "@cross-reverse=", "@repeat", "--password", "--no-sync", "--setting",
                             "isAddPage", "addedPageUrl", "getStringAttr", "resolveCreator", "getPageNumberOffset"}) {
        EXPECT_TRUE(usage.contains(QLatin1String(word))) << word;
    }
}

TEST(DriverArguments, SaysWhatIsWrong) {
    EXPECT_EQ(error(""), "no output file");
    EXPECT_EQ(error("'' a.pdf"), "no output file");
    EXPECT_EQ(error("out"), "no entries");
    EXPECT_EQ(error("--nonsense out a"), "unknown option --nonsense");
    EXPECT_EQ(error("out a --setting"), "--setting needs a value");
    EXPECT_EQ(error("--setting isAddPage out a"), "--setting needs NAME=VALUE, not 'isAddPage'");
    EXPECT_EQ(error("--setting =1 out a"), "--setting needs NAME=VALUE, not '=1'");
    EXPECT_EQ(error("out a --password"), "--password needs a value");
    EXPECT_EQ(error("out a --password x"), "--password without an entry behind it");
    EXPECT_EQ(error("out --password x --password y a"), "two passwords for one entry");
    EXPECT_EQ(error("--password x out a"), "--password stands in front of an entry, not of the output");
}

TEST(DriverEntry, KnowsItsMethods) {
    expectEntry(parseDriverEntry(QStringLiteral("a.pdf@part=1-3,5")), "a.pdf", MergeMethodPart, "1-3,5");
    expectEntry(parseDriverEntry(QStringLiteral("a.pdf@cross=2")), "a.pdf", MergeMethodCross, "2");
    expectEntry(parseDriverEntry(QStringLiteral("a.pdf@cross-reverse=1")), "a.pdf", MergeMethodCrossReverse, "1");
    expectEntry(parseDriverEntry(QStringLiteral("a.pdf@repeat")), "a.pdf", MergeMethodRepeat, nullptr);
}

TEST(DriverEntry, AValueMayBeEmpty) {
    expectEntry(parseDriverEntry(QStringLiteral("a.pdf@part=")), "a.pdf", MergeMethodPart, "");
}

TEST(DriverEntry, OnlyAKnownMethodIsSplitOff) {
    for (const char* name :
         {"a@b.pdf", "a.pdf@", "a.pdf@parts=1", "a.pdf@repeat2", "a.pdf@Repeat", "a.pdf@part", "@"}) {
        expectEntry(parseDriverEntry(QString::fromLatin1(name)), name, MergeMethodWhole, nullptr);
    }
}

TEST(DriverEntry, OnlyTheLastAtCounts) {
    expectEntry(parseDriverEntry(QStringLiteral("a@home.pdf@repeat")), "a@home.pdf", MergeMethodRepeat, nullptr);
    expectEntry(parseDriverEntry(QStringLiteral("a@repeat@cross=2")), "a@repeat", MergeMethodCross, "2");
    expectEntry(parseDriverEntry(QStringLiteral("a@repeat@home.pdf")), "a@repeat@home.pdf", MergeMethodWhole, nullptr);
}

TEST(DriverEntry, AFileThatHasTheWholeNameWins) {
    const test::TempDir dir;
    const auto name = dir.write("a.pdf@repeat", "");
    expectEntry(parseDriverEntry(QString::fromStdString(name)), name.c_str(), MergeMethodWhole, nullptr);
}

}  // namespace
}  // namespace quillon
