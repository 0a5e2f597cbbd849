#include "settings/SettingKeys.h"

#include <QColor>

namespace quillon {
namespace {

SettingKeys makeKeys() {
    using enum StoredType;
    const QVariant unchanged;
    const QVariant off = false;
    const QString empty = QStringLiteral("");
    const QString left = QStringLiteral("Left Buttom");
    const QString middle = QStringLiteral("Middle Buttom");
    const QString title = QStringLiteral("%Original_Title%");
    const QString author = QStringLiteral("%Original_Author%");
    const QString subject = QStringLiteral("%Original_Subject%");
    const QString keywords = QStringLiteral("%Original_Keywords%");
    const QColor black = Qt::black;
    using S = Setting;
    const auto key = [](const char* name) { return QString::fromLatin1(name); };
    // clang-format off
    return {{
        // setting                      key                                            stored as   missing    factory
        {S::appendPage,                  key("QUILLON_APPEND_PAGE"),                    checkState, off,       off},
        {S::appendPageOption,            key("QUILLON_APPEND_PAGE_OPTION"),             integer,    0,         unchanged},
        {S::appendPageFilePath,          key("QUILLON_APPEND_PAGE_FILE_PATH"),          filePath,   empty,     unchanged},
        {S::addWatermark,                key("QUILLON_ADD_WATERMARK"),                  checkState, off,       off},
        {S::addWatermarkContent,         key("QUILLON_ADD_WARTERMARK_CONTENT"),         text,       empty,     unchanged},
        {S::imageDPI,                    key("QUILLON_IMAGE_DPI"),                      integer,    unchanged, 300},
        {S::title,                       key("QUILLON_TITLE"),                          text,       title,     title},
        {S::author,                      key("QUILLON_AUTHOR"),                         text,       author,    author},
        {S::subject,                     key("QUILLON_SUBJECT"),                        text,       subject,   subject},
        {S::keywords,                    key("QUILLON_KEYWORDS"),                       text,       keywords,  keywords},
        {S::addBookmark,                 key("QUILLON_ADD_BOOKMARK"),                   checkState, off,       off},
        {S::addBookmarkOption,           key("QUILLON_ADD_BOOKMARK_OPTION"),            integer,    0,         unchanged},
        {S::addBookmarkUseFilename,      key("QUILLON_ADD_BOOKMARK_USE_FILENAME"),      checkState, off,       unchanged},
        {S::addBookmarkRemoveExtension,  key("QUILLON_ADD_BOOKMARK_REMOVE_EXTENSION"),  checkState, off,       unchanged},
        {S::addPageNumber,               key("QUILLON_ADD_PAGE_NUMBER"),                checkState, off,       off},
        {S::addPageNumberBegin,          key("QUILLON_ADD_PAGE_NUMBER_BEGIN"),          integer,    0,         unchanged},
        {S::addPageNumberOffset,         key("QUILLON_ADD_PAGE_NUMBER_OFFSET"),         integer,    1,         unchanged},
        {S::addPageNumberPrefix,         key("QUILLON_ADD_PAGE_NUMBER_PREFIX"),         text,       empty,     unchanged},
        {S::addPageNumberSize,           key("QUILLON_ADD_PAGE_NUMBER_SIZE"),           integer,    0,         unchanged},
        {S::addPageNumberPosition,       key("QUILLON_ADD_PAGE_NUMBER_POSITION"),       text,       left,      middle},
        // The factory's font is whatever stands first in the box.
        {S::addPageNumberFont,           key("QUILLON_ADD_PAGE_NUMBER_FONT"),           text,       unchanged, unchanged},
        {S::addPageNumberColor,          key("QUILLON_ADD_PAGE_NUMBER_COLOR"),          color,      black,     black},
        {S::userPasswordState,           key("QUILLON_USER_PASSWORD_STATE"),            checkState, off,       off},
        {S::userPassword,                key("QUILLON_USER_PASSWORD"),                  text,       empty,     unchanged},
        {S::ownerPasswordState,          key("QUILLON_OWNER_PASSWORD_STATE"),           checkState, off,       off},
        {S::ownerPassword,               key("QUILLON_OWNER_PASSWORD"),                 text,       empty,     unchanged},
        {S::allowCopy,                   key("QUILLON_ALLOW_COPY"),                     integer,    0,         1},
        {S::allowPrint,                  key("QUILLON_ALLOW_PRINT"),                    integer,    0,         1},
    }};
    // clang-format on
}

}  // namespace

const SettingKeys& settingKeys() {
    static const SettingKeys keys = makeKeys();
    return keys;
}

const SettingKey& settingKey(Setting setting) {
    return settingKeys()[static_cast<std::size_t>(setting)];
}

}  // namespace quillon
