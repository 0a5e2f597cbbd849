#include "settings/SettingsStore.h"

#include "platform/store/ColorArchive.h"
#include "platform/store/UserDefaults.h"

namespace quillon {

bool SettingsStore::isStored(Setting setting) const {
    return defaults_.contains(settingKey(setting).key);
}

std::int32_t SettingsStore::integer(Setting setting) const {
    const SettingKey& entry = settingKey(setting);
    return isStored(setting) ? defaults_.integerForKey(entry.key) : entry.missing.toInt();
}

QString SettingsStore::text(Setting setting) const {
    const SettingKey& entry = settingKey(setting);
    const QString stored = defaults_.stringForKey(entry.key);
    return stored.isNull() ? entry.missing.toString() : stored;
}

QUrl SettingsStore::location(Setting setting) const {
    return defaults_.URLForKey(settingKey(setting).key);
}

QColor SettingsStore::color(Setting setting) const {
    return ColorArchive::unarchiveObjectWithData(defaults_.dataForKey(settingKey(setting).key));
}

void SettingsStore::setInteger(Setting setting, std::int32_t value) {
    defaults_.setInteger(settingKey(setting).key, value);
}

void SettingsStore::setText(Setting setting, const QString& value) {
    defaults_.setString(settingKey(setting).key, value);
}

void SettingsStore::setColor(Setting setting, const QColor& value) {
    defaults_.setData(settingKey(setting).key, ColorArchive::archivedDataWithRootObject(value));
}

void SettingsStore::synchronize() {
    // Nothing is reported: the settings are in force, whether or not they can be kept.
    static_cast<void>(defaults_.synchronize());
}

}  // namespace quillon
