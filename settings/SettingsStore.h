#pragma once

#include "settings/SettingKeys.h"

#include <QColor>
#include <QString>
#include <QUrl>

#include <cstdint>

namespace quillon {

class UserDefaults;

/// Reads and writes settings by the table of settingKeys(): a missing one reads as the table says, and as nothing (0,
/// null) where it says that nothing is taken; a missing colour is always invalid. Main thread only.
class SettingsStore {
public:
    /// `defaults` must live as long as this object.
    explicit SettingsStore(UserDefaults& defaults) : defaults_(defaults) {}

    [[nodiscard]] bool isStored(Setting setting) const;

    [[nodiscard]] bool isOn(Setting setting) const { return integer(setting) != 0; }
    [[nodiscard]] std::int32_t integer(Setting setting) const;
    [[nodiscard]] QString text(Setting setting) const;
    /// Empty when missing or when the stored text is empty.
    [[nodiscard]] QUrl location(Setting setting) const;
    /// Invalid when missing or damaged.
    [[nodiscard]] QColor color(Setting setting) const;

    void setInteger(Setting setting, std::int32_t value);
    void setText(Setting setting, const QString& value);
    void setColor(Setting setting, const QColor& value);

    /// Makes what was set outlive the program, if the disk allows it.
    void synchronize();

private:
    UserDefaults& defaults_;
};

}  // namespace quillon
