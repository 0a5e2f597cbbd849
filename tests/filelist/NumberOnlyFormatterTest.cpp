#include "filelist/NumberOnlyFormatter.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

using namespace quillon;

namespace {

TEST(NumberOnlyFormatter, AcceptsAnEmptyText) {
    EXPECT_TRUE(NumberOnlyFormatter().isPartialStringValid(QStringLiteral("")));
    EXPECT_TRUE(NumberOnlyFormatter().isPartialStringValid(QString()));
}

TEST(NumberOnlyFormatter, AcceptsDigits) {
    const NumberOnlyFormatter formatter;
    for (const char* text : {"12", "0", "007", "0123456789", "99999999999999999999"}) {
        EXPECT_TRUE(formatter.isPartialStringValid(QString::fromLatin1(text))) << text;
    }
    EXPECT_TRUE(formatter.isPartialStringValid(QString(10'000, u'9')));
}

TEST(NumberOnlyFormatter, RefusesAnythingElseWithoutExplanation) {
    const NumberOnlyFormatter formatter;
    QString replacement = QStringLiteral("as it was");
    QString error = replacement;
    for (const char* text : {"1.5", "-3", "+3", " 1", "1 ", "1,000", "1e5", "x", "\u0661\u0662", "\uff11"}) {
        EXPECT_FALSE(formatter.isPartialStringValid(QString::fromUtf8(text), &replacement, &error)) << text;
    }
    EXPECT_EQ(replacement, QStringLiteral("as it was"));
    EXPECT_EQ(error, QStringLiteral("as it was"));
}

TEST(NumberOnlyFormatter, KeepsOtherCharactersOutOfAField) {
    const NumberOnlyFormatter formatter;
    QLineEdit field;
    field.setValidator(&formatter);
    QTest::keyClicks(&field, QStringLiteral("1a.2-3"));
    EXPECT_EQ(field.text(), QStringLiteral("123"));
}

TEST(NumberOnlyFormatter, LeavesWhatTheProgramPutsIntoAFieldAsItIs) {
    const NumberOnlyFormatter formatter;
    QLineEdit field;
    field.setValidator(&formatter);
    field.setText(QStringLiteral("-5"));
    EXPECT_EQ(field.text(), QStringLiteral("-5"));
}

}  // namespace
