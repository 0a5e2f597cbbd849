#include "benchmarks/DriverSettings.h"

#include "benchmarks/DriverPaths.h"
#include "platform/pdf/Color.h"
#include "platform/text/Font.h"

#include <QRegularExpression>
#include <QVariant>

#include <algorithm>
#include <array>

namespace quillon {
namespace {

using Kind = DriverSettings::Kind;

struct Setting {
    const char* name;
    Kind kind;
};

constexpr std::array known{
    Setting{"isAddPage", Kind::Switch},
    Setting{"isAddBlankPage", Kind::Switch},
    Setting{"addedPageUrl", Kind::Path},
    Setting{"isAddBookmark", Kind::Switch},
    Setting{"isKeepOriginalBookmark", Kind::Switch},
    Setting{"isUseFileName", Kind::Switch},
    Setting{"isRemoveExtension", Kind::Switch},
    Setting{"isAddWaterMark", Kind::Switch},
    Setting{"getWaterMarkContent", Kind::Text},
    Setting{"isAddPageNumber", Kind::Switch},
    Setting{"pageNumberPosition", Kind::Number},
    Setting{"getNextPageNumberPrefixString", Kind::Text},
    Setting{"getStringAttr", Kind::Attributes},
    Setting{"getPageNumberBegin", Kind::Number},
    Setting{"getPageNumberOffset", Kind::Number},
    Setting{"isUserEncrypt", Kind::Switch},
    Setting{"userEncryptPassword", Kind::Text},
    Setting{"isOwnerEncrypt", Kind::Switch},
    Setting{"ownerEncryptPassword", Kind::Text},
    Setting{"isCopyAllowed", Kind::Switch},
    Setting{"isPrintAllowed", Kind::Switch},
    Setting{"resolveTitle", Kind::Text},
    Setting{"resolveAuthor", Kind::Text},
    Setting{"resolveSubject", Kind::Text},
    Setting{"resolveKeywords", Kind::Text},
    Setting{"resolveCreator", Kind::Text},
};

/// The value of a setting; invalid when `value` does not fit.
QVariant readSwitch(const QString& value) {
    for (const char* yes : {"1", "yes", "true"}) {
        if (value.compare(QLatin1String(yes), Qt::CaseInsensitive) == 0) return true;
    }
    for (const char* no : {"0", "no", "false"}) {
        if (value.compare(QLatin1String(no), Qt::CaseInsensitive) == 0) return false;
    }
    return {};
}

QVariant readNumber(const QString& value) {
    bool fits = false;
    const int number = value.toInt(&fits);
    return fits ? QVariant(number) : QVariant();
}

/// Whether a text says what an attribute can be.
bool fitsAttribute(const QString& key, const QString& value) {
    bool fits = key == QLatin1String("font");
    if (key == QLatin1String("size")) (void)value.toDouble(&fits);
    if (key == QLatin1String("color")) {
        static const QRegularExpression sixDigits(QStringLiteral("^#[0-9a-fA-F]{6}$"));
        fits = sixDigits.match(value).hasMatch();
    }
    return fits;
}

QVariant readAttributes(const QString& value) {
    QVariantMap attributes;
    for (const QString& pair : value.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const auto equals = pair.indexOf(QLatin1Char('='));
        if (equals <= 0 || !fitsAttribute(pair.left(equals), pair.mid(equals + 1))) return {};
        attributes.insert(pair.left(equals), pair.mid(equals + 1));
    }
    return attributes;
}

Color colorOf(const QString& text) {
    const auto component = [&text](int at) { return text.mid(at, 2).toInt(nullptr, 16) / 255.0; };
    return Color::sRGB(component(1), component(3), component(5), 1);
}

QVariant readValue(Kind kind, const QString& value) {
    switch (kind) {
        case Kind::Switch:
            return readSwitch(value);
        case Kind::Number:
            return readNumber(value);
        case Kind::Path:
            return driverFileUrl(value);
        case Kind::Attributes:
            return readAttributes(value);
        case Kind::Text:
            break;
    }
    return value.isNull() ? QStringLiteral("") : value;
}

}  // namespace

std::optional<QString> DriverSettings::set(const QString& name, const QString& value) {
    const auto* setting = std::find_if(known.begin(), known.end(),
                                       [&name](const Setting& one) { return name == QLatin1String(one.name); });
    if (setting == known.end()) return QStringLiteral("unknown setting %1").arg(name);
    const QVariant read = readValue(setting->kind, value);
    if (!read.isValid()) return QStringLiteral("setting %1 cannot be '%2'").arg(name, value);
    values_.insert(name, read);
    return std::nullopt;
}

QStringList DriverSettings::names(Kind kind) {
    QStringList result;
    for (const auto& setting : known) {
        if (setting.kind == kind) result.append(QString::fromLatin1(setting.name));
    }
    return result;
}

bool DriverSettings::isOn(const char* name) const {
    return values_.value(QString::fromLatin1(name)).toBool();
}

std::int32_t DriverSettings::number(const char* name) const {
    return values_.value(QString::fromLatin1(name)).toInt();
}

/// Never null: what is not set is an empty text, not an absent one.
QString DriverSettings::text(const char* name) const {
    return values_.value(QString::fromLatin1(name), QStringLiteral("")).toString();
}

bool DriverSettings::isAddPage() const {
    return isOn("isAddPage");
}
bool DriverSettings::isAddBlankPage() const {
    return isOn("isAddBlankPage");
}
QUrl DriverSettings::addedPageUrl() const {
    return values_.value(QStringLiteral("addedPageUrl")).toUrl();
}
bool DriverSettings::isAddBookmark() {
    return isOn("isAddBookmark");
}
bool DriverSettings::isKeepOriginalBookmark() const {
    return isOn("isKeepOriginalBookmark");
}
bool DriverSettings::isUseFileName() const {
    return isOn("isUseFileName");
}
bool DriverSettings::isRemoveExtension() const {
    return isOn("isRemoveExtension");
}
bool DriverSettings::isAddWaterMark() const {
    return isOn("isAddWaterMark");
}
QString DriverSettings::getWaterMarkContent() const {
    return text("getWaterMarkContent");
}
bool DriverSettings::isAddPageNumber() const {
    return isOn("isAddPageNumber");
}
std::int32_t DriverSettings::pageNumberPosition() const {
    return number("pageNumberPosition");
}
QString DriverSettings::getNextPageNumberPrefixString() const {
    return text("getNextPageNumberPrefixString");
}
TextAttributes DriverSettings::getStringAttr() const {
    const QVariantMap texts = values_.value(QStringLiteral("getStringAttr")).toMap();
    if (texts.isEmpty()) return {};
    const QString font = texts.value(QStringLiteral("font"), QStringLiteral("Microsoft Sans Serif")).toString();
    const double size = texts.value(QStringLiteral("size"), Font::defaultSize).toDouble();
    const Color color = colorOf(texts.value(QStringLiteral("color"), QStringLiteral("#000000")).toString());
    return attributesWithObjectsAndKeys({{Font::objectWithName(font, size), NSFontAttributeName},
                                         {QVariant::fromValue(color), NSStrikethroughColorAttributeName},
                                         {QVariant::fromValue(color), NSForegroundColorAttributeName}});
}
std::int32_t DriverSettings::getPageNumberBegin() const {
    return number("getPageNumberBegin");
}
std::int32_t DriverSettings::getPageNumberOffset() const {
    return number("getPageNumberOffset");
}
bool DriverSettings::isUserEncrypt() const {
    return isOn("isUserEncrypt");
}
QString DriverSettings::userEncryptPassword() const {
    return text("userEncryptPassword");
}
bool DriverSettings::isOwnerEncrypt() const {
    return isOn("isOwnerEncrypt");
}
QString DriverSettings::ownerEncryptPassword() const {
    return text("ownerEncryptPassword");
}
bool DriverSettings::isCopyAllowed() const {
    return isOn("isCopyAllowed");
}
bool DriverSettings::isPrintAllowed() const {
    return isOn("isPrintAllowed");
}
QString DriverSettings::resolveTitle() {
    return text("resolveTitle");
}
QString DriverSettings::resolveAuthor() {
    return text("resolveAuthor");
}
QString DriverSettings::resolveSubject() {
    return text("resolveSubject");
}
QString DriverSettings::resolveKeywords() {
    return text("resolveKeywords");
}
QString DriverSettings::resolveCreator() {
    return text("resolveCreator");
}

}  // namespace quillon
