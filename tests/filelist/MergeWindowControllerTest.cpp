#include "filelist/MergeWindowController.h"
#include "merge/cacheData.h"
#include "platform/ui/RadioMatrix.h"
#include "platform/ui/TextColor.h"
#include "tests/support/ui/Windows.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QUrl>
#include <gtest/gtest.h>

#include <array>

using namespace quillon;
using test::find;

namespace {

constexpr std::array fields{"partTextField", "mixTextField", "mixReverseTextField"};

class MergeMethodSheet : public testing::Test {
protected:
    MergeMethodSheet() { window_.show(); }

    [[nodiscard]] SheetDialog& sheet() { return controller_.window(); }
    [[nodiscard]] QLineEdit& field(const char* name) { return find<QLineEdit>(sheet(), name); }
    [[nodiscard]] std::string text(const char* name) { return field(name).text().toStdString(); }
    [[nodiscard]] bool isNormal(const char* label) {
        return textColor(find<QLabel>(sheet(), label)) == controlTextColor();
    }
    [[nodiscard]] QRadioButton& row(int method) {
        return *find<RadioMatrix>(sheet(), "mergeMethodOption").findChildren<QRadioButton*>().at(method);
    }

    /// Opens the sheet for an entry.
    void open(std::int32_t method, const QString& value = QString(), bool isImage = false) {
        entry_.setMergeMethod(method);
        entry_.setValue(value);
        entry_.setIsImage(isImage);
        static_cast<void>(sheet());
        controller_.selectMethod(entry_);
        endCode_ = -1;
        sheet().beginSheet(window_, [this](SheetDialog& /*sheet*/, int code) { endCode_ = code; });
    }
    void choose(int method) {
        QTest::mouseClick(&row(method), Qt::LeftButton, {}, QPoint(8, row(method).height() / 2));
    }
    void retype(const char* name, const char* text) {
        field(name).selectAll();
        QTest::keyClick(&field(name), Qt::Key_Delete);
        QTest::keyClicks(&field(name), QString::fromLatin1(text));
    }
    void apply() { test::click(find<QPushButton>(sheet(), "applyButton")); }
    void cancel() { test::click(find<QPushButton>(sheet(), "cancelButton")); }
    /// Shows the sheet for an entry once, and leaves it.
    void showOnce(std::int32_t method, const char* value) {
        open(method, QString::fromLatin1(value));
        cancel();
    }

    QWidget window_;
    cacheData entry_{QUrl(QStringLiteral("file:///a.pdf"))};
    MergeWindowController controller_{QStringLiteral("MergeMethodWindow")};
    int endCode_ = -1;
};

TEST_F(MergeMethodSheet, StartsWithEverythingDisabled) {
    for (const char* name : fields) {
        EXPECT_FALSE(field(name).isEnabled()) << name;
        EXPECT_EQ(text(name), "") << name;
    }
    for (const char* label : {"partLabel", "mixLabel", "mixLabelR", "mixReverseLabel", "mixReverseLabelR"}) {
        EXPECT_EQ(textColor(find<QLabel>(sheet(), label)), disabledControlTextColor()) << label;
    }
    EXPECT_EQ(controller_.partLastValidInput(), QStringLiteral(""));
    EXPECT_FALSE(controller_.partLastValidInput().isNull());
}

TEST_F(MergeMethodSheet, TheRowsAreTheMethods) {
    for (int method = 0; method < 5; ++method) {
        open(method);
        EXPECT_EQ(controller_.getMergeOption(), method);
        EXPECT_TRUE(row(method).isChecked());
        cancel();
    }
}

TEST_F(MergeMethodSheet, OnlyTheControlsOfTheMethodAreEnabled) {
    struct Row {
        int method;
        std::array<bool, 3> enabled;
    };
    for (const Row& expected :
         {Row{1, {true, false, false}}, Row{2, {false, true, false}}, Row{3, {false, false, true}},
          Row{0, {false, false, false}}, Row{4, {false, false, false}}}) {
        open(0);
        choose(expected.method);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            EXPECT_EQ(field(fields[i]).isEnabled(), expected.enabled[i]) << expected.method << fields[i];
        }
        EXPECT_EQ(isNormal("partLabel"), expected.enabled[0]);
        for (const char* label : {"mixLabel", "mixLabelR"}) EXPECT_EQ(isNormal(label), expected.enabled[1]);
        for (const char* label : {"mixReverseLabel", "mixReverseLabelR"})
            EXPECT_EQ(isNormal(label), expected.enabled[2]);
        cancel();
    }
}

TEST_F(MergeMethodSheet, AStoredValueGoesIntoTheFieldOfItsMethodAfterWholeOrRepeat) {
    for (const int before : {0, 4}) {
        for (int method = 1; method <= 3; ++method) {
            showOnce(before, "");
            for (const char* name : fields) field(name).clear();
            const QString value = QString::number(10 * before + method);
            open(method, value);
            for (int other = 1; other <= 3; ++other) {
                const auto i = static_cast<std::size_t>(other - 1);
                EXPECT_EQ(text(fields[i]), other == method ? value.toStdString() : "") << before << method << other;
            }
            cancel();
        }
    }
}

TEST_F(MergeMethodSheet, AStoredValueGoesIntoTheFieldOfItsMethodAfterThatMethod) {
    for (int method = 1; method <= 3; ++method) {
        showOnce(method, "1");
        open(method, QStringLiteral("2"));
        EXPECT_EQ(text(fields[static_cast<std::size_t>(method - 1)]), "2") << method;
        cancel();
    }
}

TEST_F(MergeMethodSheet, ACrossReverseValueGoesIntoTheCrossFieldAfterCross) {
    showOnce(3, "7");
    showOnce(0, "");
    showOnce(2, "1");
    open(3, QStringLiteral("5"));
    EXPECT_EQ(text("mixTextField"), "5");
    EXPECT_EQ(text("mixReverseTextField"), "7");
}

TEST_F(MergeMethodSheet, ACrossValueGoesIntoTheCrossReverseFieldAfterCrossReverse) {
    showOnce(2, "7");
    showOnce(0, "");
    showOnce(3, "1");
    open(2, QStringLiteral("5"));
    EXPECT_EQ(text("mixReverseTextField"), "5");
    EXPECT_EQ(text("mixTextField"), "7");
}

TEST_F(MergeMethodSheet, AStepGoesNowhereAfterPart) {
    for (const int method : {2, 3}) {
        const char* name = fields[static_cast<std::size_t>(method - 1)];
        showOnce(0, "");
        showOnce(method, "7");
        showOnce(0, "");
        showOnce(1, "1-3");
        open(method, QStringLiteral("5"));
        EXPECT_EQ(text(name), "7");
        EXPECT_TRUE(field(name).isEnabled());
        EXPECT_EQ(text("partTextField"), "1-3");
        cancel();
    }
}

TEST_F(MergeMethodSheet, ARangeGoesNowhereAfterAStep) {
    for (const int before : {2, 3}) {
        showOnce(0, "");
        showOnce(1, "1-3");
        showOnce(0, "");
        showOnce(before, "1");
        open(1, QStringLiteral("9"));
        EXPECT_EQ(text("partTextField"), "1-3");
        cancel();
    }
}

TEST_F(MergeMethodSheet, AnAbsentValueIsNotOffered) {
    showOnce(1, "1-3");
    open(1);
    EXPECT_EQ(text("partTextField"), "1-3");
}

TEST_F(MergeMethodSheet, AnEmptyValueIsOffered) {
    showOnce(1, "1-3");
    open(1, QStringLiteral(""));
    EXPECT_EQ(text("partTextField"), "");
}

TEST_F(MergeMethodSheet, AValueIsOfferedOnce) {
    open(1, QStringLiteral("1-3"));
    retype("partTextField", "4");
    choose(0);
    choose(1);
    EXPECT_EQ(text("partTextField"), "4");
}

TEST_F(MergeMethodSheet, APictureCanOnlyBeWholeOrRepeated) {
    open(0, QString(), true);
    for (int method = 0; method < 5; ++method) EXPECT_EQ(row(method).isEnabled(), method == 0 || method == 4) << method;
    choose(2);
    EXPECT_EQ(controller_.getMergeOption(), 0);
    choose(4);
    EXPECT_EQ(controller_.getMergeOption(), 4);
    cancel();
    open(2, QStringLiteral("1"));
    for (int method = 0; method < 5; ++method) EXPECT_TRUE(row(method).isEnabled()) << method;
}

TEST_F(MergeMethodSheet, ApplyGivesTheValueOfTheSelectedMethod) {
    open(0);
    choose(1);
    retype("partTextField", "2-4,1");
    choose(2);
    retype("mixTextField", "5");
    choose(3);
    retype("mixReverseTextField", "6");
    const std::array<const char*, 5> values{"", "2-4,1", "5", "6", ""};
    for (int method = 0; method < 5; ++method) {
        choose(method);
        EXPECT_EQ(controller_.getMergeOption(), method);
        EXPECT_EQ(controller_.getMergeOptionValue(), QString::fromLatin1(values[static_cast<std::size_t>(method)]));
        EXPECT_FALSE(controller_.getMergeOptionValue().isNull());
    }
    apply();
    EXPECT_EQ(endCode_, 1);
    EXPECT_FALSE(sheet().isVisible());
}

TEST_F(MergeMethodSheet, AnEmptyParameterKeepsTheSheetOpen) {
    const std::array<const char*, 4> messages{"", "Error ! The Part Range MUST NOT BE empty !",
                                              "Error ! The page number MUST NOT BE empty !",
                                              "Error ! The page number MUST NOT BE empty !"};
    open(0);
    for (int method = 1; method <= 3; ++method) {
        choose(method);
        apply();
        EXPECT_EQ(test::takeAlert(), QString::fromLatin1(messages[static_cast<std::size_t>(method)])) << method;
        EXPECT_TRUE(sheet().isVisible());
        EXPECT_EQ(endCode_, -1);
    }
    choose(4);
    apply();
    EXPECT_EQ(test::takeAlert(), QString());
    EXPECT_EQ(endCode_, 1);
}

TEST_F(MergeMethodSheet, CancelAndEscapeEndItWithZero) {
    open(0);
    cancel();
    EXPECT_EQ(endCode_, 0);
    EXPECT_FALSE(sheet().isVisible());
    open(1);
    QTest::keyClick(&sheet(), Qt::Key_Escape);
    EXPECT_EQ(endCode_, 0);
    EXPECT_FALSE(sheet().isVisible());
}

TEST_F(MergeMethodSheet, AWrongKeyBringsTheLastValidRangeBack) {
    open(1);
    retype("partTextField", "1-3");
    QTest::keyClick(&field("partTextField"), Qt::Key_X);
    EXPECT_EQ(text("partTextField"), "1-3");
    QTest::keyClicks(&field("partTextField"), QStringLiteral(",7"));
    EXPECT_EQ(text("partTextField"), "1-3,7");
    EXPECT_EQ(controller_.partLastValidInput(), QStringLiteral("1-3,7"));
}

TEST_F(MergeMethodSheet, ARangeThatWasFilledInIsNotTheLastValidOne) {
    open(1);
    retype("partTextField", "8");
    cancel();
    open(1, QStringLiteral("1-3"));
    EXPECT_EQ(text("partTextField"), "1-3");
    QTest::keyClick(&field("partTextField"), Qt::Key_X);
    EXPECT_EQ(text("partTextField"), "8");
}

TEST_F(MergeMethodSheet, TheFirstWrongKeyEmptiesARangeThatWasFilledIn) {
    open(1, QStringLiteral("1-3"));
    QTest::keyClick(&field("partTextField"), Qt::Key_X);
    EXPECT_EQ(text("partTextField"), "");
}

TEST_F(MergeMethodSheet, OnlyTheCharactersOfARangeAreValid) {
    open(1);
    retype("partTextField", "-,0123456789");
    EXPECT_EQ(text("partTextField"), "-,0123456789");
    for (const char* wrong : {" ", ".", "+", "a", ";", "/", ":"}) {
        QTest::keyClicks(&field("partTextField"), QString::fromLatin1(wrong));
        EXPECT_EQ(text("partTextField"), "-,0123456789") << wrong;
    }
    field("partTextField").insert(QStringLiteral("\u0663"));
    Q_EMIT field("partTextField").textEdited(field("partTextField").text());
    EXPECT_EQ(text("partTextField"), "-,0123456789");
}

TEST_F(MergeMethodSheet, AStepIsADigitOrMore) {
    open(2);
    retype("mixTextField", "-1x.2");
    EXPECT_EQ(text("mixTextField"), "12");
}

TEST_F(MergeMethodSheet, TheSelectedMethodHasTheKeyboard) {
    open(3, QStringLiteral("1"));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet()));
    EXPECT_EQ(QApplication::focusWidget(), &row(3));
    QTest::keyClick(&row(3), Qt::Key_Up);
    EXPECT_EQ(controller_.getMergeOption(), 2);
    EXPECT_TRUE(field("mixTextField").isEnabled());
}

TEST_F(MergeMethodSheet, ByKeysTheFieldFollowsItsMethod) {
    open(0);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet()));
    QTest::keyClick(&sheet(), Qt::Key_C, Qt::AltModifier);
    ASSERT_TRUE(test::waitFor([this] { return controller_.getMergeOption() == 2; }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &field("mixTextField"));
}

TEST_F(MergeMethodSheet, EveryOptionIsExplainedByWordsAndAnExample) {
    for (const char* option : {"whole", "part", "mix", "mixReverse", "repeat"}) {
        const std::string name = option;
        EXPECT_GT(find<QLabel>(sheet(), (name + "Description").c_str()).text().size(), 20) << name;
        EXPECT_TRUE(find<QLabel>(sheet(), (name + "Example").c_str()).text().startsWith(QStringLiteral("Example: ")))
            << name;
    }
}

using MergeMethodSheetDeath = MergeMethodSheet;

TEST_F(MergeMethodSheetDeath, AMethodThatThereIsNotStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(open(5), "option < 5");
}

}  // namespace
