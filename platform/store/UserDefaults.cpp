#include "platform/store/UserDefaults.h"

#include "platform/store/SettingsFile.h"

#include <QStandardPaths>
#include <QVariant>

#include <algorithm>
#include <limits>

namespace quillon {

UserDefaults::UserDefaults(const QString& path) : path_(path) {
    if (SettingsFile::holdsObjects(path)) SettingsFile::setAside(path);
    SettingsFile::prepare(path);
    settings_.emplace(path, QSettings::IniFormat);
    // Lines are looked at when a value of their section is first asked for.
    static_cast<void>(settings_->allKeys());
    if (settings_->status() != QSettings::FormatError) return;
    settings_.reset();
    SettingsFile::setAside(path);
    SettingsFile::prepare(path);
    settings_.emplace(path, QSettings::IniFormat);
}

UserDefaults::~UserDefaults() {
    synchronize();
}

QString UserDefaults::standardPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Quillon/Quillon.conf");
}

bool UserDefaults::contains(const QString& key) const {
    return settings_->contains(key);
}

std::int32_t UserDefaults::integerForKey(const QString& key) const {
    using Limits = std::numeric_limits<std::int32_t>;
    const qlonglong value = stringForKey(key).trimmed().toLongLong();
    return static_cast<std::int32_t>(std::clamp<qlonglong>(value, Limits::min(), Limits::max()));
}

QString UserDefaults::stringForKey(const QString& key) const {
    const QVariant value = settings_->value(key);
    // An integer is a text once it was read from the file, and an integer before.
    const int type = value.typeId();
    if (type != QMetaType::QString && type != QMetaType::Int) return {};
    const QString text = value.toString();
    return text.isNull() ? QStringLiteral("") : text;
}

QByteArray UserDefaults::dataForKey(const QString& key) const {
    const QVariant value = settings_->value(key);
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : QByteArray();
}

QUrl UserDefaults::URLForKey(const QString& key) const {
    return QUrl::fromLocalFile(stringForKey(key));
}

void UserDefaults::setInteger(const QString& key, std::int32_t value) {
    settings_->setValue(key, value);
}

void UserDefaults::setString(const QString& key, const QString& value) {
    settings_->setValue(key, value);
}

void UserDefaults::setData(const QString& key, const QByteArray& value) {
    settings_->setValue(key, value);
}

bool UserDefaults::synchronize() {
    // A new file would be made with the rights that new files usually have; an existing one passes on its own.
    SettingsFile::prepare(path_);
    settings_->sync();
    return settings_->status() == QSettings::NoError;
}

}  // namespace quillon
