#include "platform/ui/DesktopColorScheme.h"

#include <QApplication>
#include <QColor>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QPalette>
#include <QStyle>

#include <utility>

namespace quillon {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");

/// Where there is no bus, asking for it could start one.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// 1 prefers dark, 2 light, 0 neither. The answer of Read is wrapped twice.
bool prefersDark(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value.toUInt() == 1;
}

QPalette darkPalette() {
    constexpr QRgb window = 0x2d2d30;
    constexpr QRgb text = 0xe8e8e8;
    constexpr QRgb highlight = 0x3478c0;
    const std::pair<QPalette::ColorRole, QRgb> colors[] = {
        {QPalette::Window, window},
        {QPalette::WindowText, text},
        {QPalette::Base, 0x1f1f21},
        {QPalette::AlternateBase, 0x27272a},
        {QPalette::Text, text},
        {QPalette::Button, 0x3a3a3e},
        {QPalette::ButtonText, text},
        {QPalette::BrightText, 0xffffff},
        {QPalette::ToolTipBase, 0x3a3a3e},
        {QPalette::ToolTipText, text},
        {QPalette::Highlight, highlight},
        {QPalette::HighlightedText, 0xffffff},
        {QPalette::Link, 0x7ab7ff},
        {QPalette::LinkVisited, 0xc8a2ff},
        {QPalette::PlaceholderText, 0x9a9a9a},
        {QPalette::Light, 0x505055},
        {QPalette::Midlight, 0x45454a},
        {QPalette::Mid, 0x26262a},
        {QPalette::Dark, 0x1c1c1e},
        {QPalette::Shadow, 0x101012},
    };
    QPalette palette;
    for (const auto& [role, color] : colors) palette.setColor(role, QColor::fromRgb(color));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor::fromRgb(0x85858a));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor::fromRgb(0x505055));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, QColor::fromRgb(0xb0b0b0));
    return palette;
}

}  // namespace

DesktopColorScheme::DesktopColorScheme()
    : lightStyle_(QApplication::style()->name()),
      isDarkAnyway_(QApplication::palette().color(QPalette::Window).lightness() < 128) {}

void DesktopColorScheme::follow() {
    if (!hasSessionBus()) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << appearance << colorScheme;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) setDark(prefersDark(reply.value().variant()));
    });
}

void DesktopColorScheme::settingChanged(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (arguments.mid(0, 2) == QVariantList{appearance, colorScheme}) setDark(prefersDark(arguments.value(2)));
}

void DesktopColorScheme::setDark(bool dark) {
    if (isDarkAnyway_ || dark == isDark_) return;
    isDark_ = dark;
    // Other styles take only some of their colours from the palette.
    QApplication::setStyle(dark ? QStringLiteral("fusion") : lightStyle_);
    QApplication::setPalette(dark ? darkPalette() : QPalette());
}

}  // namespace quillon
