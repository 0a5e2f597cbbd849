// How the settings become write options and the decoration of the pages.

#include "decoration/Utility.h"
#include "platform/jobs/MainThread.h"
#include "platform/pdf/WriteOptions.h"
#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"

#include <thread>

namespace quillon::test {
namespace {

class MergeSettingsStep : public MergeTest {
protected:
    void SetUp() override {
        Utility::resetShouldAddwaterMark();
        Utility::setWatermarkContent(QStringLiteral("before"));
        Utility::setShouldaddPageNumber(false);
        Utility::setPageNumberPrefixString(QStringLiteral("before"));
        Utility::setPageNumberBegin(7, 0);
        Utility::setPageNUmberPosition(1);
        Utility::setPageNumberStringAttri({});
    }

    QVariantMap refreshed() {
        job().refreshSettings();
        return job().outputAttr().value();
    }
    [[nodiscard]] static QVariantMap protection(const QVariantMap& attributes) {
        QVariantMap result;
        for (const auto& key : {kCGPDFContextUserPassword, kCGPDFContextOwnerPassword, kCGPDFContextAllowsCopying,
                                kCGPDFContextAllowsPrinting}) {
            if (attributes.contains(key)) result.insert(key, attributes.value(key));
        }
        return result;
    }
};

TEST_F(MergeSettingsStep, MakesTheOptionsWhenTheyAreAbsent) {
    EXPECT_FALSE(job().outputAttr().has_value());
    job().refreshSettings();
    EXPECT_TRUE(job().outputAttr().has_value());
}

TEST_F(MergeSettingsStep, KeepsOptionsThatWereSetBefore) {
    job().setOutputAttr(QVariantMap{{kWriteWithoutSync, true}});
    EXPECT_EQ(refreshed().value(kWriteWithoutSync), QVariant(true));
}

TEST_F(MergeSettingsStep, StoresTheDocumentInformation) {
    settings_.title = QStringLiteral("t");
    settings_.author = QStringLiteral("a");
    settings_.subject = QStringLiteral("s");
    settings_.keywords = QStringLiteral("k");
    settings_.creator = QStringLiteral("c");
    EXPECT_EQ(refreshed(), (QVariantMap{{kCGPDFContextTitle, QStringLiteral("t")},
                                        {kCGPDFContextAuthor, QStringLiteral("a")},
                                        {kCGPDFContextSubject, QStringLiteral("s")},
                                        {kCGPDFContextKeywords, QStringLiteral("k")},
                                        {kCGPDFContextCreator, QStringLiteral("c")}}));
}

TEST_F(MergeSettingsStep, ATitleThatResolvesToNothingLeavesItsKeyOut) {
    settings_.title = QString();
    EXPECT_FALSE(refreshed().contains(kCGPDFContextTitle));
    EXPECT_TRUE(refreshed().contains(kCGPDFContextAuthor));
}

TEST_F(MergeSettingsStep, AnEmptyTitleIsStored) {
    EXPECT_EQ(refreshed().value(kCGPDFContextTitle), QVariant(QStringLiteral("")));
}

TEST_F(MergeSettingsStep, AnAbsentValueNeverRemovesAnEarlierOne) {
    job().setOutputAttr(QVariantMap{{kCGPDFContextTitle, QStringLiteral("earlier")}});
    settings_.title = QString();
    EXPECT_EQ(refreshed().value(kCGPDFContextTitle), QVariant(QStringLiteral("earlier")));
}

TEST_F(MergeSettingsStep, SetSettingNeedsValueKeyAndOptions) {
    const QString key = QStringLiteral("key");
    job().setSetting(1, key);
    EXPECT_FALSE(job().outputAttr().has_value());
    job().setOutputAttr(QVariantMap());
    job().setSetting(QVariant(), key);
    job().setSetting(QString(), key);
    job().setSetting(1, QString());
    EXPECT_TRUE(job().outputAttr().value().isEmpty());
    job().setSetting(false, key);
    EXPECT_EQ(job().outputAttr().value(), (QVariantMap{{key, false}}));
}

TEST_F(MergeSettingsStep, WithoutPasswordsThereIsNoProtection) {
    EXPECT_TRUE(protection(refreshed()).isEmpty());
}

TEST_F(MergeSettingsStep, AUserPasswordAloneIsTheOwnerPasswordTooAndRestrictsNothing) {
    settings_.userEncrypt = true;
    settings_.userPassword = QStringLiteral("u");
    settings_.ownerPassword = QStringLiteral("unused");
    EXPECT_EQ(protection(refreshed()), (QVariantMap{{kCGPDFContextUserPassword, QStringLiteral("u")},
                                                    {kCGPDFContextOwnerPassword, QStringLiteral("u")}}));
}

TEST_F(MergeSettingsStep, AnOwnerPasswordAloneRestrictsWhatIsNotAllowed) {
    settings_.ownerEncrypt = true;
    settings_.ownerPassword = QStringLiteral("o");
    settings_.copyAllowed = true;
    EXPECT_EQ(protection(refreshed()),
              (QVariantMap{{kCGPDFContextOwnerPassword, QStringLiteral("o")}, {kCGPDFContextAllowsPrinting, false}}));
}

TEST_F(MergeSettingsStep, CopyingCanBeRestrictedAlone) {
    settings_.ownerEncrypt = true;
    settings_.ownerPassword = QStringLiteral("o");
    settings_.printAllowed = true;
    EXPECT_EQ(protection(refreshed()),
              (QVariantMap{{kCGPDFContextOwnerPassword, QStringLiteral("o")}, {kCGPDFContextAllowsCopying, false}}));
}

TEST_F(MergeSettingsStep, WithBothPasswordsEachIsItsOwn) {
    settings_.userEncrypt = true;
    settings_.userPassword = QStringLiteral("u");
    settings_.ownerEncrypt = true;
    settings_.ownerPassword = QStringLiteral("o");
    settings_.copyAllowed = true;
    settings_.printAllowed = true;
    EXPECT_EQ(protection(refreshed()), (QVariantMap{{kCGPDFContextUserPassword, QStringLiteral("u")},
                                                    {kCGPDFContextOwnerPassword, QStringLiteral("o")}}));
}

TEST_F(MergeSettingsStep, AnAbsentPasswordIsNotStored) {
    settings_.userEncrypt = true;
    settings_.userPassword = QString();
    EXPECT_TRUE(protection(refreshed()).isEmpty());
}

TEST_F(MergeSettingsStep, SwitchesTheWatermarkOn) {
    settings_.addWaterMark = true;
    settings_.waterMarkContent = QStringLiteral("Draft");
    job().refreshSettings();
    EXPECT_TRUE(Utility::shouldAddWaterMark());
    EXPECT_EQ(Utility::waterMarkContent(), QStringLiteral("Draft"));
}

TEST_F(MergeSettingsStep, SwitchesTheWatermarkOffAndLeavesItsText) {
    Utility::setShouldAddWaterMark();
    settings_.waterMarkContent = QStringLiteral("Draft");
    job().refreshSettings();
    EXPECT_FALSE(Utility::shouldAddWaterMark());
    EXPECT_EQ(Utility::waterMarkContent(), QStringLiteral("before"));
}

TEST_F(MergeSettingsStep, SwitchesPageNumbersOn) {
    settings_.addPageNumber = true;
    settings_.position = 2;
    settings_.prefix = QStringLiteral("Page");
    settings_.attributes = {{QStringLiteral("size"), 9}};
    settings_.begin = 3;
    settings_.offset = 2;
    job().refreshSettings();
    EXPECT_TRUE(Utility::shouldAddPageNumber());
    EXPECT_EQ(Utility::getPageNumberPosition(), 2U);
    EXPECT_EQ(Utility::pageNumberStringAttri(), settings_.attributes);
    EXPECT_EQ(Utility::pageNumberString(), QStringLiteral("Page 3"));
    EXPECT_EQ(Utility::pageNumberString(), QStringLiteral("Page 5"));
}

TEST_F(MergeSettingsStep, EveryMergeStartsItsNumbersAnew) {
    settings_.addPageNumber = true;
    settings_.begin = 1;
    settings_.offset = 1;
    job().refreshSettings();
    (void)Utility::pageNumberString();
    job().refreshSettings();
    EXPECT_EQ(Utility::pageNumberString(), QStringLiteral(" 1"));
}

TEST_F(MergeSettingsStep, SwitchesPageNumbersOffAndLeavesTheRest) {
    Utility::setShouldaddPageNumber(true);
    settings_.position = 2;
    settings_.prefix = QStringLiteral("Page");
    job().refreshSettings();
    EXPECT_FALSE(Utility::shouldAddPageNumber());
    EXPECT_EQ(Utility::getPageNumberPosition(), 1U);
    EXPECT_EQ(Utility::pageNumberString(), QStringLiteral("before 7"));
}

TEST_F(MergeSettingsStep, BookmarksThatComeToNothingRemoveThoseThatTheOutputHad) {
    settings_.addBookmark = true;
    addFile(write("A", PdfFixture("A", 2).bookmark("own", 1)));
    add("B", 1);
    EXPECT_EQ(merged(), "A1 A2 B1");
    EXPECT_TRUE(outlineLines(target()).empty());
}

TEST_F(MergeSettingsStep, WithoutBookmarksTheOutlineOfTheFirstInputStays) {
    addFile(write("A", PdfFixture("A", 2).bookmark("own", 1)));
    add("B", 1);
    EXPECT_EQ(merged(), "A1 A2 B1");
    EXPECT_EQ(outlineLines(target()).size(), 1U);
}

TEST_F(MergeSettingsStep, RunsOnTheMainThread) {
    struct Watching : PlainSettings {
        bool wasMainThread = false;
        [[nodiscard]] QString resolveTitle() override {
            wasMainThread = MainThread::isCurrent();
            return {};
        }
    } settings;
    MergeOperation watched(list_, urlOf(target()), settings, owner_);
    std::thread background([&watched] { watched.main(); });
    MainThread::waitUntil([this] { return owner_.calls.size() == 2; });
    background.join();
    EXPECT_TRUE(settings.wasMainThread);
}

}  // namespace
}  // namespace quillon::test
