#include "merge/cacheData.h"

#include <gtest/gtest.h>

#include <thread>

namespace quillon {
namespace {

QUrl url(const QString& name) {
    return QUrl::fromLocalFile(QStringLiteral("/files/") + name);
}

void expectFresh(const cacheData& record, const QUrl& expectedUrl) {
    EXPECT_EQ(record.url(), expectedUrl);
    EXPECT_TRUE(record.password().isNull());
    EXPECT_EQ(record.needPassword(), -1);
    EXPECT_TRUE(record.value().isNull());
    EXPECT_EQ(record.mergeMethod(), 0);
    EXPECT_TRUE(record.isDecrypted());
    EXPECT_FALSE(record.isImage());
    EXPECT_EQ(record.fileSize(), -1);
    EXPECT_EQ(record.pageCount(), -1);
}

void fill(cacheData& record) {
    record.setUrl(url(QStringLiteral("filled.pdf")));
    record.setPassword(QStringLiteral("secret"));
    record.setNeedPassword(1);
    record.setValue(QStringLiteral("1-3"));
    record.setMergeMethod(MergeMethodPart);
    record.setIsDecrypted(false);
    record.setIsImage(true);
    record.setFileSize(12);
    record.setPageCount(34);
}

void expectFilled(const cacheData& record) {
    EXPECT_EQ(record.url(), url(QStringLiteral("filled.pdf")));
    EXPECT_EQ(record.password(), QStringLiteral("secret"));
    EXPECT_EQ(record.needPassword(), 1);
    EXPECT_EQ(record.value(), QStringLiteral("1-3"));
    EXPECT_EQ(record.mergeMethod(), 1);
    EXPECT_FALSE(record.isDecrypted());
    EXPECT_TRUE(record.isImage());
    EXPECT_EQ(record.fileSize(), 12);
    EXPECT_EQ(record.pageCount(), 34);
}

TEST(cacheData, AFreshRecordHasTheDefaults) {
    expectFresh(cacheData(url(QStringLiteral("a.pdf"))), url(QStringLiteral("a.pdf")));
}

TEST(cacheData, EveryFieldCanBeSet) {
    cacheData record{QUrl()};
    fill(record);
    expectFilled(record);
}

TEST(cacheData, SwapWithItselfChangesNothing) {
    cacheData record{QUrl()};
    fill(record);
    record.swap(record);
    expectFilled(record);
}

TEST(cacheData, SwapExchangesAllFields) {
    cacheData filled{QUrl()};
    fill(filled);
    cacheData fresh(url(QStringLiteral("fresh.pdf")));
    filled.swap(fresh);
    expectFresh(filled, url(QStringLiteral("fresh.pdf")));
    expectFilled(fresh);
}

TEST(cacheData, SwappingTwiceRestores) {
    cacheData filled{QUrl()};
    fill(filled);
    cacheData fresh(url(QStringLiteral("fresh.pdf")));
    filled.swap(fresh);
    fresh.swap(filled);
    expectFresh(fresh, url(QStringLiteral("fresh.pdf")));
    expectFilled(filled);
}

TEST(cacheData, TheMethodCodesAreFixed) {
    EXPECT_EQ(MergeMethodWhole, 0);
    EXPECT_EQ(MergeMethodPart, 1);
    EXPECT_EQ(MergeMethodCross, 2);
    EXPECT_EQ(MergeMethodCrossReverse, 3);
    EXPECT_EQ(MergeMethodRepeat, 4);
}

// A thread checker looks at this one.
TEST(cacheData, AnObjectFieldMayBeReadWhileItIsSet) {
    cacheData record{QUrl()};
    record.setValue(QStringLiteral("one"));
    std::thread writer([&record] {
        for (int i = 0; i < 1000; ++i) record.setValue(i % 2 == 0 ? QStringLiteral("two") : QStringLiteral("one"));
    });
    for (int i = 0; i < 1000; ++i) {
        const QString value = record.value();
        EXPECT_TRUE(value == QStringLiteral("one") || value == QStringLiteral("two")) << value.toStdString();
    }
    writer.join();
}

}  // namespace
}  // namespace quillon
