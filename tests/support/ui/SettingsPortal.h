#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace quillon::test {

/// Stands for the part of a desktop that tells programs whether it prefers dark colours.
class SettingsPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit SettingsPortal(uint colorScheme) : colorScheme_(colorScheme) {}

    [[nodiscard]] bool serve(QDBusConnection bus) {
        return bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                  QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
               bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    void change(uint colorScheme) {
        colorScheme_ = colorScheme;
        Q_EMIT SettingChanged(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                              QDBusVariant(colorScheme));
    }

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        const bool known = group == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme");
        return QDBusVariant(QVariant::fromValue(QDBusVariant(known ? colorScheme_ : 0U)));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    uint colorScheme_;
};

}  // namespace quillon::test
