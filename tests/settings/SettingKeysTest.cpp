#include "platform/ui/ColorWell.h"
#include "settings/SettingKeys.h"
#include "settings/SettingsStore.h"
#include "tests/settings/SettingSheetTest.h"

#include <QFontDatabase>
#include <QSet>

using namespace quillon;

namespace {

/// What a key of the store means for the sheet.
struct Row {
    const char* key;
    StoredType type;
    const char* control;
    QVariant stored;   // a value that is neither missing nor factory
    QVariant shown;    // what the control shows for it
    QVariant missing;  // what it shows when the group is on and the key missing; invalid: the factory value or nothing
    QVariant factory;  // what it shows after the reset; invalid: what it showed before
};

QString s(const char* text) {
    return QString::fromUtf8(text);
}

std::vector<Row> rows() {
    using enum StoredType;
    const QVariant kept;
    const QVariant on = true;
    const QVariant off = false;
    const QByteArray red = "#ffff0000";
    return {
        {"QUILLON_APPEND_PAGE", checkState, "appendPageCheck", 1, on, off, off},
        {"QUILLON_APPEND_PAGE_OPTION", integer, "appendPageOptionRadio", 1, 1, 0, kept},
        {"QUILLON_APPEND_PAGE_FILE_PATH", filePath, "appendPagePathField", s("/a b/ä.pdf"), s("/a b/ä.pdf"), s(""),
         kept},
        {"QUILLON_ADD_WATERMARK", checkState, "addWatermarkCheck", 1, on, off, off},
        {"QUILLON_ADD_WARTERMARK_CONTENT", text, "addWatermarkField", s("Draft"), s("Draft"), s(""), kept},
        {"QUILLON_IMAGE_DPI", integer, "imageDPIField", 72, s("72"), s("300"), s("300")},
        {"QUILLON_TITLE", text, "titleField", s("T"), s("T"), s("%Original_Title%"), s("%Original_Title%")},
        {"QUILLON_AUTHOR", text, "authorField", s("A"), s("A"), s("%Original_Author%"), s("%Original_Author%")},
        {"QUILLON_SUBJECT", text, "subjectField", s(""), s(""), s("%Original_Subject%"), s("%Original_Subject%")},
        {"QUILLON_KEYWORDS", text, "keywordsField", s("k, l"), s("k, l"), s("%Original_Keywords%"),
         s("%Original_Keywords%")},
        {"QUILLON_ADD_BOOKMARK", checkState, "addBookmarkCheck", 1, on, off, off},
        {"QUILLON_ADD_BOOKMARK_OPTION", integer, "addBookmarkOptionRadio", 1, 1, 0, kept},
        {"QUILLON_ADD_BOOKMARK_USE_FILENAME", checkState, "addBookmarkUseFilenameCheck", 1, on, off, kept},
        {"QUILLON_ADD_BOOKMARK_REMOVE_EXTENSION", checkState, "addBookmarkRemoveCheck", 1, on, off, kept},
        {"QUILLON_ADD_PAGE_NUMBER", checkState, "addPageNumberCheck", 1, on, off, off},
        {"QUILLON_ADD_PAGE_NUMBER_BEGIN", integer, "addPageNumberBeginField", 7, s("7"), s("0"), kept},
        {"QUILLON_ADD_PAGE_NUMBER_OFFSET", integer, "addPageNumberOffsetField", 2, s("2"), s("1"), kept},
        {"QUILLON_ADD_PAGE_NUMBER_PREFIX", text, "addPageNumberPrefixField", s("Page"), s("Page"), s(""), kept},
        {"QUILLON_ADD_PAGE_NUMBER_SIZE", integer, "addPageNumberSizeField", 10, s("10"), s("0"), kept},
        {"QUILLON_ADD_PAGE_NUMBER_POSITION", text, "addPageNumberPositionBox", s("Right Buttom"), s("Right Buttom"),
         s("Left Buttom"), s("Middle Buttom")},
        {"QUILLON_ADD_PAGE_NUMBER_FONT", text, "addPageNumberFontBox", test::secondFont(), test::secondFont(),
         QFontDatabase::families().value(0), QFontDatabase::families().value(0)},
        {"QUILLON_ADD_PAGE_NUMBER_COLOR", color, "colorWell", red, s("#ff0000"), s("#000000"), s("#000000")},
        {"QUILLON_USER_PASSWORD_STATE", checkState, "userPasswordCheck", 1, on, off, off},
        {"QUILLON_USER_PASSWORD", text, "userPasswordField", s("open"), s("open"), s(""), kept},
        {"QUILLON_OWNER_PASSWORD_STATE", checkState, "ownerPasswordCheck", 1, on, off, off},
        {"QUILLON_OWNER_PASSWORD", text, "ownerPasswordField", s("own"), s("own"), s(""), kept},
        {"QUILLON_ALLOW_COPY", integer, "ownerPasswordCopyBox", 1, 1, 0, 1},
        {"QUILLON_ALLOW_PRINT", integer, "ownerPasswordPrintBox", 1, 1, 0, 1},
    };
}

const Row& rowOf(std::size_t index) {
    static const std::vector<Row> all = rows();
    return all.at(index);
}

/// The parameter is the place of the row: the rows need the fonts of the running program.
class SettingKeyRow : public test::SettingSheet, public testing::WithParamInterface<std::size_t> {
protected:
    const Row& row_ = rowOf(GetParam());
    const SettingKey& key_ = settingKeys().at(GetParam());

    void storeValue(const Row& row) {
        if (row.type == StoredType::color) {
            store(row.key, row.stored.toByteArray());
        } else if (row.stored.typeId() == QMetaType::Int) {
            store(row.key, row.stored.toInt());
        } else {
            store(row.key, row.stored.toString());
        }
    }

    [[nodiscard]] bool isGroup() const {
        return row_.type == StoredType::checkState && row_.missing == QVariant(false) && row_.factory.isValid();
    }
};

TEST_P(SettingKeyRow, StandsInTheTableAtItsPlace) {
    EXPECT_EQ(static_cast<std::size_t>(key_.setting), GetParam());
    EXPECT_EQ(key_.key, s(row_.key));
    EXPECT_EQ(key_.type, row_.type);
    EXPECT_EQ(&settingKey(key_.setting), &key_);
}

TEST_P(SettingKeyRow, ShowsWhatIsStored) {
    storeGroupsOn();
    storeValue(row_);
    start();
    EXPECT_EQ(shown(row_.control), row_.shown);
}

TEST_P(SettingKeyRow, ShowsWhatTheTableSaysWhenItsKeyIsMissing) {
    // A group's own key and those of its details cannot be missing for the same reason.
    if (!isGroup()) storeGroupsOn();
    if (row_.key == std::string("QUILLON_ADD_BOOKMARK_USE_FILENAME")) store(row_.key, 0);
    start();
    EXPECT_EQ(shown(row_.control), row_.missing);
}

TEST_P(SettingKeyRow, HasTheMissingAndFactoryValuesOfTheSheetInTheTable) {
    const auto asShown = [this](const QVariant& value) {
        if (value.typeId() == QMetaType::QColor) return QVariant(value.value<QColor>().name());
        return row_.shown.typeId() == QMetaType::QString ? QVariant(value.toString()) : value;
    };
    if (key_.missing.isValid()) {
        EXPECT_EQ(asShown(key_.missing), row_.missing);
    }
    if (key_.factory.isValid()) {
        EXPECT_EQ(asShown(key_.factory), row_.factory);
    } else if (row_.type != StoredType::text || row_.key != std::string("QUILLON_ADD_PAGE_NUMBER_FONT")) {
        EXPECT_FALSE(row_.factory.isValid());
    }
}

TEST_P(SettingKeyRow, TakesItsFactoryValueByTheDefaultButton) {
    storeGroupsOn();
    storeValue(row_);
    start();
    click("defaultButton");
    EXPECT_EQ(shown(row_.control), row_.factory.isValid() ? row_.factory : row_.shown);
}

TEST_P(SettingKeyRow, IsNotReadWhileItsGroupIsOff) {
    const bool always = QSet<QString>{s("QUILLON_IMAGE_DPI"), s("QUILLON_TITLE"), s("QUILLON_AUTHOR"),
                                      s("QUILLON_SUBJECT"), s("QUILLON_KEYWORDS")}
                            .contains(s(row_.key));
    start();
    const QVariant before = shown(row_.control);
    storeValue(row_);
    controller().restoreUserDefaults();
    EXPECT_EQ(shown(row_.control), always || isGroup() ? row_.shown : before);
}

INSTANTIATE_TEST_SUITE_P(Keys, SettingKeyRow, testing::Range(std::size_t(0), std::size_t(28)),
                         [](const auto& parameter) { return settingKeys().at(parameter.param).key.toStdString(); });

TEST(SettingKeys, AreTwentyEightAndAllDifferent) {
    QSet<QString> names;
    for (const SettingKey& key : settingKeys()) {
        EXPECT_TRUE(key.key.startsWith(s("QUILLON_"))) << key.key.toStdString();
        names.insert(key.key);
    }
    EXPECT_EQ(names.size(), 28);
}

}  // namespace
