#include "platform/text/Font.h"

#include "platform/gui/GuiServices.h"

#include <array>
#include <cmath>
#include <utility>

namespace quillon {

namespace {

bool hasFamily(const QString& name) {
    const GuiServices* const services = GuiServices::instance();
    return services && services->hasFontFamily(name);
}

/// The family that stands for "Microsoft Sans Serif", and for the default font.
///
/// That font has the proportions of Arial and Helvetica, so what was made to their measures comes first: texts then
/// take the room that they have elsewhere. The others are the sans serifs that nearly every system has. Nimbus Sans,
/// another Helvetica, comes last, since some systems have it only in a form that cannot be embedded.
QString findSansSerif() {
    constexpr std::array<const char*, 9> nearest = {
        "Microsoft Sans Serif", "Arial",     "Liberation Sans", "Arimo", "Helvetica", "FreeSans",
        "DejaVu Sans",          "Noto Sans", "Nimbus Sans"};
    for (const char* name : nearest) {
        const QString family = QString::fromLatin1(name);
        if (hasFamily(family)) return family;
    }
    const GuiServices* const services = GuiServices::instance();
    return services ? services->usualSansSerif() : QString();
}

const QString& sansSerif() {
    static const QString family = findSansSerif();
    return family;
}

double usable(double size) {
    return std::isfinite(size) && size > 0 ? size : Font::defaultSize;
}

}  // namespace

Font::Font() : Font(sansSerif(), defaultSize) {}

Font::Font(QString family, double size) : family_(std::move(family)), size_(usable(size)) {}

std::optional<Font> Font::fontWithName(const QString& name, double size) {
    if (name == QLatin1String("Microsoft Sans Serif")) return Font(sansSerif(), size);
    if (name.isEmpty() || !hasFamily(name)) return std::nullopt;
    return Font(name, size);
}

QVariant Font::objectWithName(const QString& name, double size) {
    const auto font = fontWithName(name, size);
    return font ? QVariant::fromValue(*font) : QVariant();
}

}  // namespace quillon
