#include "benchmarks/DriverSettings.h"

#include <gtest/gtest.h>

#include <string>

namespace quillon {
namespace {

std::string set(DriverSettings& settings, const char* name, const char* value) {
    return settings.set(QString::fromLatin1(name), QString::fromLatin1(value))
        .value_or(QStringLiteral("ok"))
        .toStdString();
}

TEST(DriverSettings, AnswersNoEmptyAndZeroToEverything) {
    DriverSettings settings;
    EXPECT_FALSE(settings.isAddPage() || settings.isAddBlankPage() || settings.isAddBookmark());
    EXPECT_FALSE(settings.isKeepOriginalBookmark() || settings.isUseFileName() || settings.isRemoveExtension());
    EXPECT_FALSE(settings.isAddWaterMark() || settings.isAddPageNumber());
    EXPECT_FALSE(settings.isUserEncrypt() || settings.isOwnerEncrypt());
    EXPECT_FALSE(settings.isCopyAllowed() || settings.isPrintAllowed());
    EXPECT_TRUE(settings.addedPageUrl().isEmpty());
    EXPECT_TRUE(settings.getStringAttr().isEmpty());
    EXPECT_EQ(settings.pageNumberPosition() + settings.getPageNumberBegin() + settings.getPageNumberOffset(), 0);
    for (const QString& text :
         {settings.getWaterMarkContent(), settings.getNextPageNumberPrefixString(), settings.userEncryptPassword(),
          settings.ownerEncryptPassword(), settings.resolveTitle(), settings.resolveAuthor(), settings.resolveSubject(),
          settings.resolveKeywords(), settings.resolveCreator()}) {
        EXPECT_TRUE(text.isEmpty());
        EXPECT_FALSE(text.isNull());
    }
}

TEST(DriverSettings, EverySwitchAnswersForItself) {
    using Getter = bool (*)(DriverSettings&);
    const struct {
        const char* name;
        Getter get;
    } switches[] = {
        {"isAddPage", [](DriverSettings& s) { return s.isAddPage(); }},
        {"isAddBlankPage", [](DriverSettings& s) { return s.isAddBlankPage(); }},
        {"isAddBookmark", [](DriverSettings& s) { return s.isAddBookmark(); }},
        {"isKeepOriginalBookmark", [](DriverSettings& s) { return s.isKeepOriginalBookmark(); }},
        {"isUseFileName", [](DriverSettings& s) { return s.isUseFileName(); }},
        {"isRemoveExtension", [](DriverSettings& s) { return s.isRemoveExtension(); }},
        {"isAddWaterMark", [](DriverSettings& s) { return s.isAddWaterMark(); }},
        {"isAddPageNumber", [](DriverSettings& s) { return s.isAddPageNumber(); }},
        {"isUserEncrypt", [](DriverSettings& s) { return s.isUserEncrypt(); }},
        {"isOwnerEncrypt", [](DriverSettings& s) { return s.isOwnerEncrypt(); }},
        {"isCopyAllowed", [](DriverSettings& s) { return s.isCopyAllowed(); }},
        {"isPrintAllowed", [](DriverSettings& s) { return s.isPrintAllowed(); }},
    };
    for (const auto& on : switches) {
        DriverSettings settings;
        ASSERT_EQ(set(settings, on.name, "1"), "ok");
        for (const auto& one : switches) EXPECT_EQ(one.get(settings), one.name == on.name) << on.name << one.name;
    }
    EXPECT_EQ(DriverSettings::names(DriverSettings::Kind::Switch).size(), 12);
}

TEST(DriverSettings, ASwitchTakesWordsToo) {
    DriverSettings settings;
    for (const char* yes : {"1", "yes", "TRUE"}) {
        ASSERT_EQ(set(settings, "isAddPage", yes), "ok");
        EXPECT_TRUE(settings.isAddPage()) << yes;
    }
    for (const char* no : {"0", "NO", "false"}) {
        ASSERT_EQ(set(settings, "isAddPage", no), "ok");
        EXPECT_FALSE(settings.isAddPage()) << no;
    }
}

TEST(DriverSettings, EveryTextAnswersForItself) {
    DriverSettings settings;
    for (const QString& name : DriverSettings::names(DriverSettings::Kind::Text)) {
        ASSERT_FALSE(settings.set(name, QStringLiteral("text of ") + name).has_value());
    }
    EXPECT_EQ(settings.getWaterMarkContent(), QStringLiteral("text of getWaterMarkContent"));
    EXPECT_EQ(settings.getNextPageNumberPrefixString(), QStringLiteral("text of getNextPageNumberPrefixString"));
    EXPECT_EQ(settings.userEncryptPassword(), QStringLiteral("text of userEncryptPassword"));
    EXPECT_EQ(settings.ownerEncryptPassword(), QStringLiteral("text of ownerEncryptPassword"));
    EXPECT_EQ(settings.resolveTitle(), QStringLiteral("text of resolveTitle"));
    EXPECT_EQ(settings.resolveAuthor(), QStringLiteral("text of resolveAuthor"));
    EXPECT_EQ(settings.resolveSubject(), QStringLiteral("text of resolveSubject"));
    EXPECT_EQ(settings.resolveKeywords(), QStringLiteral("text of resolveKeywords"));
    EXPECT_EQ(settings.resolveCreator(), QStringLiteral("text of resolveCreator"));
}

TEST(DriverSettings, NumbersPathAndAttributes) {
    DriverSettings settings;
    EXPECT_EQ(set(settings, "pageNumberPosition", "2"), "ok");
    EXPECT_EQ(set(settings, "getPageNumberBegin", "-2147483648"), "ok");
    EXPECT_EQ(set(settings, "getPageNumberOffset", "5"), "ok");
    EXPECT_EQ(set(settings, "addedPageUrl", "/pad page.pdf"), "ok");
    EXPECT_EQ(settings.pageNumberPosition(), 2);
    EXPECT_EQ(settings.getPageNumberBegin(), -2147483647 - 1);
    EXPECT_EQ(settings.getPageNumberOffset(), 5);
    EXPECT_EQ(settings.addedPageUrl(), QUrl::fromLocalFile(QStringLiteral("/pad page.pdf")));
    EXPECT_TRUE(settings.getStringAttr().isEmpty());
    EXPECT_EQ(set(settings, "getStringAttr", "font=Any,size=9.5,color=#0a0B0c"), "ok");
}

TEST(DriverSettings, RefusesWhatDoesNotFitAndChangesNothing) {
    DriverSettings settings;
    ASSERT_EQ(set(settings, "isAddPage", "1"), "ok");
    EXPECT_EQ(set(settings, "isAddPage", "maybe"), "setting isAddPage cannot be 'maybe'");
    EXPECT_TRUE(settings.isAddPage());
    EXPECT_EQ(set(settings, "getPageNumberBegin", "2147483648"), "setting getPageNumberBegin cannot be '2147483648'");
    EXPECT_EQ(set(settings, "getPageNumberBegin", ""), "setting getPageNumberBegin cannot be ''");
    for (const char* wrong : {"size", "size=large", "color=red", "colour=#000000"}) {
        EXPECT_EQ(set(settings, "getStringAttr", wrong),
                  std::string("setting getStringAttr cannot be '") + wrong + "'");
    }
    EXPECT_EQ(set(settings, "nonsense", "1"), "unknown setting nonsense");
    EXPECT_EQ(set(settings, "registerTitle", "1"), "unknown setting registerTitle");
}

}  // namespace
}  // namespace quillon
