#pragma once

#include <QString>
#include <QVariant>

#include <array>
#include <cstddef>

namespace quillon {

/// The settings that are kept between runs, in the order of settingKeys().
enum class Setting : std::size_t {
    appendPage,
    appendPageOption,
    appendPageFilePath,
    addWatermark,
    addWatermarkContent,
    imageDPI,
    title,
    author,
    subject,
    keywords,
    addBookmark,
    addBookmarkOption,
    addBookmarkUseFilename,
    addBookmarkRemoveExtension,
    addPageNumber,
    addPageNumberBegin,
    addPageNumberOffset,
    addPageNumberPrefix,
    addPageNumberSize,
    addPageNumberPosition,
    addPageNumberFont,
    addPageNumberColor,
    userPasswordState,
    userPassword,
    ownerPasswordState,
    ownerPassword,
    allowCopy,
    allowPrint,
};

/// How a setting is stored.
enum class StoredType {
    checkState,  // the integer 1 for on, 0 for off; read as on when not 0
    integer,     // a number, a row or an index
    text,
    filePath,  // a text, read as the location of a file
    color,     // data, see ColorArchive
};

struct SettingKey {
    Setting setting;
    QString key;
    StoredType type;
    /// What restoring takes when the key is missing; invalid: nothing, the control keeps its value.
    QVariant missing;
    /// What the factory settings put into the control; invalid: nothing, the control keeps its value.
    QVariant factory;
};

using SettingKeys = std::array<SettingKey, 28>;

/// The table of all that is kept.
[[nodiscard]] const SettingKeys& settingKeys();
[[nodiscard]] const SettingKey& settingKey(Setting setting);

}  // namespace quillon
